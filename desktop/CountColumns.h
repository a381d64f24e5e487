// The columns with the numbers of added and removed lines.
#pragma once

class QTreeView;

namespace desktop {

// Shows the numbers in these columns in the colours of added and removed lines, and makes the columns as
// narrow as their numbers. The header is hidden, and the other columns share the rest of the width.
void ShowCountColumns(QTreeView& tree, int added, int removed);

}  // namespace desktop
