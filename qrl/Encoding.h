// The encoding of a source file, and the conversion between its bytes and the working text, a byte string
// that can be converted back to the same bytes:
//   Default  the file's bytes as they are, in the source code page (win/paths/CodePage.h);
//   UTF8     the bytes after the byte order mark as they are, malformed ones too;
//   Unicode  UTF-16LE on disk, UTF-8 in the working text. A lone surrogate becomes its three-byte form, as in
//            generalised UTF-8 (Simon Sapin, "The WTF-8 encoding").
//
// There are three instances, compared by identity.
#pragma once

#include <string>
#include <string_view>

namespace qrl {

class TEncoding {
 public:
  static const TEncoding& Default();
  static const TEncoding& UTF8();
  static const TEncoding& Unicode();

  virtual ~TEncoding() = default;
  TEncoding(const TEncoding&) = delete;
  TEncoding& operator=(const TEncoding&) = delete;

  // Returns the working text of `bytes`, which do not contain a mark. Unicode raises rtl::EConvertError for
  // an odd number of bytes.
  virtual std::string GetString(std::string bytes) const = 0;
  // Returns the bytes of a piece of working text, without a mark. Pieces may be converted one by one and
  // concatenated. Unicode raises rtl::EConvertError for malformed UTF-8, which GetString never returns.
  virtual std::string GetBytes(std::string_view text) const = 0;
  // Returns True if GetBytes returns its argument unchanged, so that it need not be called.
  virtual bool IsIdentity() const { return true; }
  // Returns the byte order mark of a written file: FF FE for Unicode, nothing for the others.
  virtual std::string_view WrittenMark() const { return {}; }

 protected:
  TEncoding() = default;
};

inline bool operator==(const TEncoding& left, const TEncoding& right) {
  return &left == &right;
}

}  // namespace qrl
