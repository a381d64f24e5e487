// The ticks of reviewed files and of findings that are done. The marks are in a file beside the undo file, so
// that they are there again when the run is looked at later.
//
//   TReviewMarks marks(mig::JoinPath(backupDir, kReviewMarksName));
//   marks.Set(TReviewMarks::TKind::Reviewed, "Main.pas", true);
#pragma once

#include <array>
#include <set>
#include <string>
#include <string_view>

namespace desktop {

inline constexpr char kReviewMarksName[] = "Review.json";

class TReviewMarks {
 public:
  // Reviewed: paths of files, relative to the folder of the run. Done: fingerprints of findings.
  enum class TKind { Reviewed, Done };

  // Reads the file, a full Windows path. There are no marks if it is missing or damaged. With an empty name
  // the marks last as long as the object.
  explicit TReviewMarks(std::string_view fileName);

  bool Has(TKind kind, const std::string& key) const { return FMarks[Index(kind)].contains(key); }
  // Sets or removes marks. Save writes them; it returns false if the file cannot be written, and the marks
  // stay in memory then.
  void Set(TKind kind, const std::string& key, bool isSet);
  [[nodiscard]] bool Save() const;
  const std::string& FileName() const { return FFileName; }
  // The folder to which the paths are relative, a full Windows path; empty if the file does not tell it.
  const std::string& Folder() const { return FFolder; }
  void SetFolder(std::string_view folder) { FFolder = folder; }

 private:
  static size_t Index(TKind kind) { return static_cast<size_t>(kind); }

  std::string FFileName;
  std::string FFolder;
  std::array<std::set<std::string>, 2> FMarks;
};

}  // namespace desktop
