// A replacement or a restore with its questions to the user and the page with the outcome. The wizard does it
// after Finish, and so does a host that has its own preview.
//
//   ReplaceInteractively(replacer, [] { ReloadEditors(); });
#pragma once

#include <functional>
#include <string_view>

#include "MigWizard/run/Replacer.h"

namespace mig {

// Runs the replacer with its present options, again without damaged files if the user wants that, calls
// `onReplaced` if it succeeded, and shows the outcome. Then shows the changes or undoes the run if the user
// asks for it. An exception of the run is passed on; if the front end can show why the run ended, rtl::EAbort
// is raised instead.
void ReplaceInteractively(TComponentReplacer& replacer, const std::function<void()>& onReplaced);

// Restores the files of an undo file or a journal, a full Windows path: asks first, closes the host's project
// meanwhile, and shows the outcome. Does nothing if the user answers No. Passes on the exceptions of the
// restore.
void RestoreInteractively(TComponentReplacer& replacer, std::string_view undoFile);

}  // namespace mig
