// A replacement or a restore as the user sees it: with the questions that come up, and the page that tells
// the outcome. The wizard does it after Finish, and a host that has its own preview does the same.
//
//   ReplaceAndTell(replacer, [] { ReloadEditors(); });
#pragma once

#include <functional>
#include <string_view>

#include "MigWizard/run/Replacer.h"

namespace mig {

// Runs the replacer with its present options, again without damaged files if the user wants that, calls
// `onReplaced` if it succeeded, and tells the outcome. Shows the changes or takes the run back if the user
// asks for it then. An exception of the run is passed on; if the front end can show why the run ended,
// rtl::EAbort is raised instead.
void ReplaceAndTell(TComponentReplacer& replacer, const std::function<void()>& onReplaced);

// Restores the files of an undo file or a journal, a full Windows path: asks first, closes the host's project
// meanwhile, and tells the outcome. Does nothing if the user answers No. Passes on the exceptions of the
// restore.
void RestoreAndTell(TComponentReplacer& replacer, std::string_view undoFile);

}  // namespace mig
