// The size of the host's window and the places of its panes, stored in the user's settings.
#pragma once

class QMainWindow;
class QIcon;

namespace desktop {

// Gives a window the size and the panes that it had at its last StoreWindow, or a size that fits its screen.
// Call it after the panes were made; each must have an object name.
void RestoreWindow(QMainWindow& window);
void StoreWindow(const QMainWindow& window);

// Returns the program's icon: that of the desktop's icon theme if the program is installed, otherwise a drawn
// one.
QIcon WindowIcon();

}  // namespace desktop
