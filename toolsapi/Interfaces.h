// Reference-counted interfaces with identities, as the host's programming interface uses them.
//
// An interface is an abstract class with single inheritance from IInterface. Its identity, a GUID, is
// declared next to it. A cast to an interface without an identity does not compile; such an interface is only
// returned by other operations. TIntf keeps the reference count:
//
//   TIntf<IOTAModule> module = services->GetModule(0);
//   if (auto group = Supports<IOTAProjectGroup>(module)) group->Close();
//   CastTo<INTAServices>(BorlandIDEServices)->GetMainMenu();  // raises if the host lacks it
//
// Counts are not locked, because everything runs on the host's main thread. Program and loadable module may
// be built by different compilers, so interfaces are found by identity and never by type information.
#pragma once

#include <array>
#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "rtl/text/Exceptions.h"

namespace toolsapi {

// 128 bits, written "{55A5E848-27FB-4880-8E7C-7F05A9802482}".
class TGuid {
 public:
  constexpr TGuid() = default;
  // A malformed text does not compile in a constant expression.
  constexpr explicit TGuid(std::string_view text) {
    if (text.size() != 38 || text.front() != '{' || text.back() != '}') throw "malformed GUID";
    size_t nibble = 0;
    for (size_t i = 1; i < 37; ++i) {
      const bool isDash = i == 9 || i == 14 || i == 19 || i == 24;
      if (isDash != (text[i] == '-')) throw "malformed GUID";
      if (isDash) continue;
      FBytes[nibble / 2] = static_cast<uint8_t>(FBytes[nibble / 2] << 4 | HexValue(text[i]));
      ++nibble;
    }
  }
  constexpr bool operator==(const TGuid&) const = default;

 private:
  static constexpr int HexValue(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
    if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
    throw "malformed GUID";
  }

  std::array<uint8_t, 16> FBytes{};
};

// An identity, and the name of the interface for messages.
struct TInterfaceId {
  std::string_view Name;
  TGuid Guid;
};

struct TNoIdentity {};
// The identity of an interface, defined by a specialisation next to the interface. Not inherited.
template <class T>
inline constexpr TNoIdentity kIdOf{};
template <class T>
concept HasIdentity = std::same_as<std::remove_cv_t<decltype(kIdOf<T>)>, TInterfaceId>;

// The root of all interfaces.
class IInterface {
 public:
  using TBase = void;

  // Returns the object's interface of that identity, with one reference counted for the caller, or null. The
  // pointer is to the interface's class. The result for one object and one identity never changes.
  [[nodiscard]] virtual void* QueryInterface(const TGuid& id) = 0;
  // Return the new count. At 0 the object is destroyed, by its own module.
  virtual int AddRef() = 0;
  virtual int Release() = 0;

 protected:
  ~IInterface() = default;
};
template <>
inline constexpr TInterfaceId kIdOf<IInterface>{"IInterface",
                                                TGuid("{00000000-0000-0000-C000-000000000046}")};

// A counted reference to an interface, or to a class that implements some; may be null. Two are equal if they
// are the same interface of the same object.
template <class T>
class TIntf {
 public:
  constexpr TIntf() = default;
  constexpr TIntf(std::nullptr_t) {}  // NOLINT: converts on purpose
  // Adds a reference.
  explicit TIntf(T* object) : FObject(object) {
    if (FObject) FObject->AddRef();
  }
  TIntf(const TIntf& other) : TIntf(other.Get()) {}
  TIntf(TIntf&& other) noexcept : FObject(std::exchange(other.FObject, nullptr)) {}
  template <class TOther>
  requires std::convertible_to<TOther*, T*> TIntf(const TIntf<TOther>& other)
      : TIntf(static_cast<T*>(other.Get())) {}  // NOLINT: converts on purpose
  ~TIntf() {
    if (FObject) FObject->Release();
  }
  TIntf& operator=(TIntf other) noexcept {
    std::swap(FObject, other.FObject);
    return *this;
  }

  // Takes ownership of a reference that is already counted.
  static TIntf Adopt(T* object) {
    TIntf result;
    result.FObject = object;
    return result;
  }

  T* Get() const { return FObject; }
  T* operator->() const {
    rtl::Assert(FObject != nullptr, "A call through an interface that is nothing.");
    return FObject;
  }
  T& operator*() const { return *operator->(); }
  explicit operator bool() const { return FObject != nullptr; }
  bool operator==(const TIntf&) const = default;
  bool operator==(std::nullptr_t) const { return FObject == nullptr; }

 private:
  T* FObject = nullptr;
};

// Returns the interface T of the object of `from`, or null if it lacks T or `from` is null.
template <HasIdentity T, class TFrom>
[[nodiscard]] TIntf<T> Supports(const TIntf<TFrom>& from) {
  if (!from) return nullptr;
  return TIntf<T>::Adopt(static_cast<T*>(from->QueryInterface(kIdOf<T>.Guid)));
}

// Returns the interface T of the object of `from`. Raises rtl::EInvalidCast if it lacks T or `from` is null.
template <HasIdentity T, class TFrom>
[[nodiscard]] TIntf<T> CastTo(const TIntf<TFrom>& from) {
  TIntf<T> result = Supports<T>(from);
  if (!result) throw rtl::EInvalidCast("Interface not supported: " + std::string(kIdOf<T>.Name) + ".");
  return result;
}

}  // namespace toolsapi
