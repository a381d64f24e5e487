#include "MigWizard/run/RunErrors.h"

#include <new>

namespace mig {

EFileConversion::EFileConversion(std::string_view fileName, std::string_view reason)
    : Exception(std::string(fileName).append(": ").append(reason)), FFileName(fileName) {}

void WithFileInErrors(const std::string& fileName, const std::function<void()>& action) {
  try {
    action();
  } catch (const rtl::EAbort&) {
    throw;
  } catch (const rtl::EStreamError&) {
    throw;
  } catch (const ENameClash&) {
    throw;
  } catch (const EFileConversion&) {
    throw;
  } catch (const EFileEdited&) {
    throw;
  } catch (const rtl::EOutOfMemory&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw rtl::EOutOfMemory(fileName + ": Not enough memory.");
  } catch (const rtl::Exception& error) {
    throw EFileConversion(fileName, error.what());
  }
}

}  // namespace mig
