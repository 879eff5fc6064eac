#pragma once
// Intrusive, atomically reference-counted objects. Every model object, the
// engine and every object generator is made through CreateSharedObject and
// destroyed only by its last Release(); nothing is deleted directly.

#include <atomic>
#include <cstdint>
#include <exception>
#include <new>
#include <utility>

namespace ppdforge {

// Number of shared objects alive in the process; the tests check that it
// returns to its starting value after every test.
inline std::atomic<long>& SharedObjectLiveCount() {
  static std::atomic<long> count{0};
  return count;
}

// Adds the reference count to T, which declares `Retain()` and `Release()`
// as pure virtual functions returning int32_t (in its interface and, for model
// objects, in its mixins; this class overrides them all).
template <class T>
class ASharedObject final : public T {
 public:
  template <class... Args>
  explicit ASharedObject(Args&&... args) : T(std::forward<Args>(args)...) {
    SharedObjectLiveCount().fetch_add(1);
  }
  ~ASharedObject() override { SharedObjectLiveCount().fetch_sub(1); }

  ASharedObject(const ASharedObject&) = delete;
  ASharedObject& operator=(const ASharedObject&) = delete;

  // Adds one reference; returns the new count.
  std::int32_t Retain() noexcept override { return count_.fetch_add(1) + 1; }
  // Gives up one reference and destroys the object at zero; returns the new count.
  std::int32_t Release() noexcept override {
    const std::int32_t remaining = count_.fetch_sub(1) - 1;
    if (remaining == 0) delete this;
    return remaining;
  }

 private:
  std::atomic<std::int32_t> count_{1};
};

// A new T with the count 1, owned by the caller; null when allocation fails
// or the constructor throws.
template <class T, class... Args>
T* CreateSharedObject(Args&&... args) noexcept {
  try {
    return new (std::nothrow) ASharedObject<T>(std::forward<Args>(args)...);
  } catch (...) {
    return nullptr;
  }
}

// CreateSharedObject<T>() seen as the interface I; the registry's creator.
template <class I, class T>
I* CreateRootSharedObject() noexcept {
  return static_cast<I*>(CreateSharedObject<T>());
}

// Releases `object` when it is not null; for scope-end clean-up.
template <class T>
void ReleaseObject(T* object) noexcept {
  if (object != nullptr) object->Release();
}

// Holds one reference and gives it up at scope end (for locals only; the
// model keeps raw pointers as its ownership rules say).
template <class T>
class AScopedRef {
 public:
  explicit AScopedRef(T* object = nullptr) noexcept : object_(object) {}
  ~AScopedRef() { ReleaseObject(object_); }
  AScopedRef(const AScopedRef&) = delete;
  AScopedRef& operator=(const AScopedRef&) = delete;
  AScopedRef(AScopedRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  T* get() const noexcept { return object_; }
  T* operator->() const noexcept { return object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }
  // Hands the reference to the caller.
  T* release() noexcept { return std::exchange(object_, nullptr); }

 private:
  T* object_;
};

}  // namespace ppdforge
