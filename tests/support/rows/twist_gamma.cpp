// Rows of this family are added as its members land.
#include "support/rows/rows.hpp"

namespace tpxtest {

void addTwistGammaRows(std::vector<Export>&) {}

}  // namespace tpxtest
