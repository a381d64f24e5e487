#include "MigWizard/run/RunErrors.h"

namespace mig {

EFileConversion::EFileConversion(std::string_view fileName, std::string_view reason)
    : Exception(std::string(fileName).append(": ").append(reason)), FFileName(fileName) {}

void NamingFile(const std::string& fileName, const std::function<void()>& action) {
  try {
    action();
  } catch (const rtl::EAbort&) {
    throw;
  } catch (const rtl::EStreamError&) {
    throw;
  } catch (const ETwinFiles&) {
    throw;
  } catch (const rtl::Exception& error) {
    throw EFileConversion(fileName, error.what());
  }
}

}  // namespace mig
