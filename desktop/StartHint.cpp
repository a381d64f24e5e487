#include "desktop/StartHint.h"

#include <QAction>

#include "desktop/QtText.h"

namespace desktop {

QString StartHint(const QAction* wizard, bool isOpen, const std::vector<std::string>& recent) {
  const QString start = wizard == nullptr ? QString()
                                          : QString("<p>Start the <a href='wizard'>%1</a>&nbsp; (%2)</p>")
                                                .arg(wizard->text().remove('&'),
                                                     wizard->shortcut().toString(QKeySequence::NativeText));
  if (isOpen) return "<p>Open a unit or a form in the project's tree</p>" + start;
  QString projects;
  for (size_t i = 0; i < recent.size(); ++i)
    projects += QString("<br><a href='recent:%1'>%2</a>").arg(i).arg(ToQt(recent[i]).toHtmlEscaped());
  if (!projects.isEmpty()) projects = "<p>Recent projects" + projects + "</p>";
  return "<p><a href='open'>Open a project</a>&nbsp; (Ctrl+O), or drop it here</p>" + projects + start;
}

}  // namespace desktop
