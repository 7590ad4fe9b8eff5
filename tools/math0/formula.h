#pragma once

// Formulas set in a row: every part stands where the widths of those before it leave off.

#include <string>
#include <string_view>
#include <vector>

#include "tools/math0/specimen_page.h"

namespace kelvane::math0 {

inline constexpr float kFormulaSize = 12;
inline constexpr float kLimitSize = 9;  // over, under and beside large operators

class Row {
 public:
  // A row of one line in the notation of notation.h; rows stand wherever a line would do.
  Row(std::string_view notation = {});
  Row(const char* notation) : Row(std::string_view(notation)) {}

  Row& Then(std::string_view notation);
  // A large operator with what stands under and over it.
  Row& Large(char key, std::string_view under, std::string_view over = {});
  // An integral sign with its bounds beside its foot and head.
  Row& Integral(char key, std::string_view from, std::string_view to = {});
  Row& Fraction(const Row& over, const Row& under);
  // `key` is the radical; it is scaled until a whole number of bars covers the row.
  Row& Root(char key, const Row& inside);
  // Rows of cells one under the other, in columns that share a middle or a left edge.
  Row& Array(const std::vector<std::vector<Row>>& cells, Anchor anchor, float lineStep, float columnGap);
  // A tall delimiter from its keys, top to bottom; kRight for one whose pieces share the right edge.
  Row& Tall(std::string_view keys, float pieceSize, Anchor edge = kLeft);

  void Set(Page& page, float x, float y, Anchor anchor = kLeft) const;

 private:
  struct Item {
    float x, y, size;  // from the row's origin, points
    std::string run;
  };

  void AddRun(float space, const std::string& run);
  void Add(float x, float y, float size, const std::string& run);
  void AddCentred(float x, float y, float size, const std::string& run);
  void AddRow(float x, float y, const Row& other);

  std::vector<Item> items;
  float width = 0;
  float top = 0;  // how far the row reaches above its baseline
};

}  // namespace kelvane::math0
