#pragma once

// The paper's commands: new, open, save, turning pages, and what is offered before a page is left.
//
// They complete what is half typed or drawn, ask, write, and only then change what is in memory. All throw
// Failure when a file cannot be read or written; page, name and number are then as they were. All return
// false if the person gave the command up, with the same left as it was.

#include <string>

#include "platform/controls.h"

namespace kelvane {

// The window whose title names the paper, and the box that shows the page number.
extern Window* Form1;
extern TextBox* PageBox;

inline constexpr char kProgramTitle[] = "Kelvane ver 1.7";
inline constexpr char kPageFilter[] = "*.001|*.001";

// Forgets what page files held.
void ResetPaperCommands();

bool SavePaper();
bool SavePaperAs();
bool NewPaper();
bool OpenPaper();
bool OpenPaperFile(const std::string& chosenFile);
// They write the page that is left if its file does not hold it, and return false, too, if there is no page
// to go to.
bool PageUp();
bool PageDown();
// Goes to a page as "Pg Up" and "Pg Dn" do, in one step. False for the current page and for a number that no
// page has, too.
bool GoToPage(int number);

// Asks whether to save a changed page that is not empty, and saves it.
bool OfferToSave();
// The first step of printing and plain-text output: writes a changed page of a named paper to its own file,
// and offers to save one that has no name.
bool StorePageBeforeOutput();

// Shows the paper's name and whether the page has changed in the window's title; after commands and edits.
void ShowPaperState();
// Shows the current page number in the page box.
void ShowPageNumber();

}  // namespace kelvane
