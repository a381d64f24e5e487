// A base for classes that implement interfaces: reference count, lookup by identity, destruction.
//
//   class TExpert : public TInterfacedObject<IOTAWizard> { ... };
//   TIntf<IOTAWizard> wizard = MakeIntf<TExpert>();
//
// The object is destroyed with its last reference. Create it with MakeIntf, never on the stack. References
// that are added and released while its constructor runs do not destroy it.
#pragma once

#include <utility>

#include "toolsapi/Interfaces.h"

namespace toolsapi {

template <class... TInterfaces>
class TInterfacedObject : public TInterfaces... {
 public:
  TInterfacedObject(const TInterfacedObject&) = delete;
  TInterfacedObject& operator=(const TInterfacedObject&) = delete;

  // Finds the interfaces in TInterfaces and their bases; IInterface is that of the first one.
  [[nodiscard]] void* QueryInterface(const TGuid& id) override {
    void* found = nullptr;
    ((found = found ? found : FindInLine<TInterfaces>(static_cast<TInterfaces*>(this), id)), ...);
    if (found) AddRef();
    return found;
  }
  int AddRef() final { return ++FRefCount; }
  int Release() final {
    const int left = --FRefCount;
    if (left == 0) delete this;
    return left;
  }

 protected:
  TInterfacedObject() = default;
  virtual ~TInterfacedObject() = default;

  // Returns `self` as the interface of that identity if that is TInterface or one of its bases, or null.
  // Counts no reference.
  template <class TInterface>
  static void* FindInLine(TInterface* self, const TGuid& id) {
    if constexpr (HasIdentity<TInterface>) {
      if (kIdOf<TInterface>.Guid == id) return self;
    }
    if constexpr (!std::is_void_v<typename TInterface::TBase>) {
      return FindInLine<typename TInterface::TBase>(self, id);
    }
    return nullptr;
  }

 private:
  int FRefCount = 1;  // passed on to the TIntf of MakeIntf
};

template <class T, class... TArgs>
[[nodiscard]] TIntf<T> MakeIntf(TArgs&&... args) {
  return TIntf<T>::Adopt(new T(std::forward<TArgs>(args)...));
}

}  // namespace toolsapi
