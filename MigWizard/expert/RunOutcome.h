// The page that tells the outcome of a run or a restore: a sentence, the reasons if something failed, numbers,
// what was left as it is, and buttons for what can follow. A front end that cannot ask shows the sentence alone.
#pragma once

#include <string>
#include <vector>

#include "MigWizard/expert/RunObserver.h"

namespace mig {

// What to do after the page was closed.
enum class TOutcomeAnswer { Nothing, ShowChanges, Undo };

// Tells the result of Replace.
TOutcomeAnswer ShowReplaced(TComponentReplacer& replacer, TRunObserver& observer, bool succeeded);

// Tells why a run ended with an exception, or that the user stopped it. Returns False if the front end cannot
// ask; nothing was shown then. Sets `answer` otherwise.
bool ShowEnded(const TComponentReplacer& replacer, const TRunObserver& observer, const std::exception& error,
               TOutcomeAnswer& answer);

// Tells the result of a restore of `count` files. `leftOut` tells in a line each what was not restored.
void ShowRestored(const std::string& title, bool succeeded, size_t count,
                  const std::vector<std::string>& leftOut, const std::vector<std::string>& warnings);

// Returns the full name of the undo file or the journal that takes back the last run of the replacer, or an
// empty string.
std::string WayBackOf(const TReplaceOptions& options);

}  // namespace mig
