// The usual base of a class that implements interfaces: count, identity look-up, end of life.
//
//   class TExpert : public TInterfacedObject<IOTAWizard> { ... };
//   TIntf<IOTAWizard> wizard = MakeIntf<TExpert>();
//
// The object lives until its last reference goes; it is made with MakeIntf alone, never on the stack. A
// reference to it that comes and goes while its constructor runs does not end it.
#pragma once

#include <utility>

#include "toolsapi/Interfaces.h"

namespace toolsapi {

template <class... TInterfaces>
class TInterfacedObject : public TInterfaces... {
 public:
  TInterfacedObject(const TInterfacedObject&) = delete;
  TInterfacedObject& operator=(const TInterfacedObject&) = delete;

  // Answers for each of TInterfaces and for their bases; the first one listed answers for IInterface.
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

  // `self` as the interface of that identity, if it is TInterface or one of its bases; no reference is
  // counted.
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
  int FRefCount = 1;  // the maker's, which MakeIntf hands to the first TIntf
};

template <class T, class... TArgs>
[[nodiscard]] TIntf<T> MakeIntf(TArgs&&... args) {
  return TIntf<T>::Adopt(new T(std::forward<TArgs>(args)...));
}

}  // namespace toolsapi
