// The encoding of a source file, and the conversion between its bytes and the working text.
//
// The working text is a byte string from which the same bytes can always be made again:
//   Default  the file's bytes as they are, in the source code page (win/CodePage.h);
//   UTF8     the bytes behind the mark as they are, malformed ones too;
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

  // The working text of `bytes`, which hold no mark. Unicode raises rtl::EConvertError on an odd number of
  // bytes.
  virtual std::string GetString(std::string bytes) const = 0;
  // The bytes of a piece of working text, without a mark. Pieces may be converted one by one and put end to
  // end.
  virtual std::string GetBytes(std::string_view text) const = 0;
  // Whether GetBytes gives its argument unchanged, so that it need not be called.
  virtual bool IsIdentity() const { return true; }
  // The bytes that a written file begins with: FF FE for Unicode, nothing for the others.
  virtual std::string_view WrittenMark() const { return {}; }

 protected:
  TEncoding() = default;
};

inline bool operator==(const TEncoding& left, const TEncoding& right) {
  return &left == &right;
}

}  // namespace qrl
