// The text in the host's window while no page is open.
#pragma once

#include <QString>
#include <string>
#include <vector>

class QAction;

namespace desktop {

// Returns the hint as HTML. Its links are "open", "wizard", and "recent:N" with an index of `recent`, the
// full Windows paths of projects. `wizard` starts the wizard, null if there is none. `isOpen`: a project is
// open.
QString StartHint(const QAction* wizard, bool isOpen, const std::vector<std::string>& recent);

}  // namespace desktop
