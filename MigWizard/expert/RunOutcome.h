// The page with the outcome of a run or a restore: a sentence, the reasons if something failed, counts, the
// files that were left out, and buttons for the next steps. A front end that cannot ask shows only the
// sentence.
#pragma once

#include <string>
#include <vector>

#include "MigWizard/expert/RunObserver.h"

namespace mig {

// The next step, which the user chose on the page.
enum class TOutcomeAnswer { Nothing, ShowChanges, Undo };

// Shows the result of Replace.
TOutcomeAnswer ShowReplaced(TComponentReplacer& replacer, TRunObserver& observer, bool succeeded);

// Shows why a run ended with an exception, or that the user stopped it. Returns True and sets `answer`. If
// the front end cannot ask, shows nothing and returns False.
bool ShowEnded(const TComponentReplacer& replacer, const TRunObserver& observer, const std::exception& error,
               TOutcomeAnswer& answer);

// Shows the result of a restore of `count` files. `leftOut` has one line for each file that was not restored.
void ShowRestored(const std::string& title, bool succeeded, size_t count,
                  const std::vector<std::string>& leftOut, const std::vector<std::string>& warnings);

// Returns the full name of the undo file or the journal that undoes the last run with these options, or an
// empty string.
std::string LastUndoFile(const TReplaceOptions& options);

}  // namespace mig
