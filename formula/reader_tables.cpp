// Tables and the lines of limits.

#include "formula/reader.h"

namespace kelvane::formula {

// ---- Tables ----

void Reader::TakeEndOf(std::string_view name, std::size_t begin) {
  if (!AtName("end")) Fail(begin, begin + 6, "no \\end{" + std::string(name) + "}");
  const std::size_t from = at_;
  TakeName("end");
  const std::string_view closed = ReadRaw("behind \\end", from);
  if (closed != name)
    Fail(from, at_, "\\end{" + std::string(closed) + "} for \\begin{" + std::string(name) + "}");
}

std::string Reader::ColumnsOf(std::string_view given) {
  std::string columns;
  int skip = 0;
  for (std::size_t i = 0; i < given.size(); ++i) {
    const char c = given[i];
    if (c == '{') ++skip;
    if (c == '}') --skip;
    if (skip > 0) continue;
    if (c == 'l' || c == 'c' || c == 'r' || c == '|') columns += c;
    if (c == 'p') columns += 'l';
  }
  return columns.empty() ? "c" : columns;
}

int Reader::ReadTable(std::size_t begin) {
  const Deeper deeper(*this, begin);
  const std::string name(ReadRaw("behind \\begin", begin));
  const Environment* found = FindEnvironment(name);
  if (!found || found->outer) Fail(begin, at_, "unknown table \\begin{" + name + "}");
  TableForm form;
  form.columns = found->columns;
  form.small = found->small;
  form.display = found->display;
  form.pairs = found->pairs;
  form.cases = found->cases;
  form.lines = found->lines;
  ReadOptional();
  for (int i = 0; i < found->arguments; ++i) ReadRaw("behind \\begin{" + name + "}", begin);
  if (found->given) form.columns = ColumnsOf(ReadRaw("behind \\begin{" + name + "}", begin));
  const int table = ReadRows(std::move(form), begin);
  TakeEndOf(name, begin);
  tree()[table].end = at_;
  if (found->opening == 0 && found->closing == 0) return table;
  const int index = New(Kind::Fence, begin, Atom::Inner);
  Node& node = tree()[index];
  node.first = table;
  node.character = found->opening;
  node.closing = found->closing;
  return index;
}

int Reader::ReadRows(TableForm form, std::size_t begin) {
  List rows;
  int number = 0;
  for (bool more = true; more;) {
    for (SkipBlanks(); AtName("hline") || AtName("hdashline"); SkipBlanks()) {
      TakeName(NameHere());
      form.rulesAbove.push_back(number);
    }
    List cells;
    const std::size_t from = at_;
    bool alone = true;
    for (;;) {
      const std::size_t cellAt = at_;
      const int cell = ReadRow(Ends::Cell);
      SkipBlanks();
      if (tree()[cell].first == kNone) tree()[cell].begin = cellAt;
      Append(cells, cell);
      if (Here() != '&') break;
      ++at_;
      alone = false;
    }
    more = false;
    if (Here() == '\\') {
      const Name* name = FindName(NameHere());
      if (name && name->does == Does::LineEnd) {
        TakeName(NameHere());
        if (Here() == '*') ++at_;
        ReadOptional();
        more = true;
      }
    }
    // The last line end may have nothing behind it.
    if (!more && alone && rows.first != kNone && tree()[cells.first].first == kNone) break;
    for (int cell = cells.first; cell != kNone; cell = tree()[cell].next)
      if (tree()[cell].first == kNone && !form.pairs) NoteCell(cell);
    Append(rows, RowOf(cells, from));
    ++number;
  }
  const int index = New(Kind::Table, begin, Atom::Ordinary);
  tree()[index].first = rows.first;
  tree()[index].value = static_cast<int>(tree().tables.size());
  tree().tables.push_back(std::move(form));
  return index;
}

int Reader::ReadSubstack(std::size_t begin) {
  SkipBlanks();
  if (Here() != '{') Fail(begin, at_, "something is missing behind \\substack");
  const std::size_t open = at_++;
  TableForm form;
  form.columns = "c";
  form.lines = true;
  const int table = ReadLines(std::move(form), begin);
  if (Here() != '}') Fail(open, open + 1, "no closing brace");
  ++at_;
  return table;
}

int Reader::ReadLines(TableForm form, std::size_t begin) {
  const Deeper deeper(*this, begin);
  List rows;
  for (;;) {
    List list;
    const std::size_t from = at_;
    for (SkipBlanks(); !AtEnd() && Here() != '}' && !AtName("\\"); SkipBlanks()) {
      if (Here() == '&') Fail(at_, at_ + 1, "a column mark outside of a table");
      if (AtEndOf(Ends::Brace)) break;
      Append(list, ReadScripted());
    }
    const int cell = RowOf(list, from);
    if (list.first == kNone) NotePlace(cell, at_);
    Append(rows, RowOf({cell, cell}, from));
    if (!AtName("\\")) break;
    TakeName("\\");
    ReadOptional();
  }
  const int index = New(Kind::Table, begin);
  tree()[index].first = rows.first;
  tree()[index].value = static_cast<int>(tree().tables.size());
  tree().tables.push_back(std::move(form));
  return index;
}

}  // namespace kelvane::formula
