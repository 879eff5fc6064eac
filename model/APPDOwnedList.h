#pragma once
// The ordered elements a model object owns: one reference per element, each
// element attached to the owner while it is held, lookups by ID.

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <vector>

#include "core/AQVString.h"

namespace ppdforge {

// `Owner` supplies `Attach(T*)`, called once the element is stored, and
// `Detach(T*)`, called once it left the list and before it is released.
// With `kIndexed`, ID lookups go through an index (ID to the first element
// with that ID), so a held element must report a rename through
// InvalidateIndex(); without it every lookup reads the IDs in order.
// The owner clears the list in its destructor: the hooks need the owner.
template <class T, class Owner, bool kIndexed = false>
class APPDOwnedList {
 public:
  explicit APPDOwnedList(Owner* owner) : owner_(owner) {}
  APPDOwnedList(const APPDOwnedList&) = delete;
  APPDOwnedList& operator=(const APPDOwnedList&) = delete;

  // The held elements in order (borrowed).
  const std::vector<T*>& Elements() const { return elements_; }

  // The first element with exactly this ID (borrowed), or null.
  T* Find(const AQVString& id) const {
    if constexpr (kIndexed) {
      for (int attempt = 0; attempt < 2; ++attempt) {
        if (!indexValid_) {
          index_.clear();
          for (T* element : elements_) index_.emplace(element->GetID(), element);
          indexValid_ = true;
        }
        const auto it = index_.find(id);
        if (it == index_.end()) return nullptr;
        if (it->second->GetID() == id) return it->second;
        // Renamed without telling us (e.g. an element of another implementation).
        indexValid_ = false;
      }
      return nullptr;
    } else {
      const std::size_t position = ScanForID(id);
      return position < elements_.size() ? elements_[position] : nullptr;
    }
  }

  // Stores `element` (a copy when `copy`) at the end, after dropping the
  // held element that Find gives for its ID. The stored element (borrowed),
  // or null for null or a failed copy.
  T* Add(T* element, bool copy) {
    if (element == nullptr) return nullptr;
    // Our reference first: the element dropped below may be this very object.
    T* stored = copy ? element->Clone() : element;
    if (stored == nullptr) return nullptr;
    if (!copy) stored->Retain();
    const std::size_t old = PositionOfID(stored->GetID());
    if (old < elements_.size()) EraseAt(old);
    Append(stored);
    return stored;
  }

  // Takes over one reference to `element` and stores it at the end without
  // looking at its ID.
  void Append(T* element) {
    elements_.push_back(element);
    if constexpr (kIndexed) {
      if (indexValid_) index_.emplace(element->GetID(), element);
    }
    owner_->Attach(element);
  }

  // Drops `element` if held, else the first held element equal to it.
  void Remove(const T* element) {
    if (element == nullptr) return;
    auto it = std::find(elements_.begin(), elements_.end(), element);
    if (it == elements_.end()) {
      it = std::find_if(elements_.begin(), elements_.end(),
                        [element](const T* held) { return *held == *element; });
    }
    if (it != elements_.end()) EraseAt(static_cast<std::size_t>(it - elements_.begin()));
  }

  // Drops the element that Find gives for `id`, if any.
  void RemoveWithID(const AQVString& id) {
    const std::size_t position = PositionOfID(id);
    if (position < elements_.size()) EraseAt(position);
  }

  // Drops every element for which `removes` is true; the rest keep their order.
  template <class Predicate>
  void RemoveIf(Predicate removes) {
    std::vector<T*> kept;
    kept.reserve(elements_.size());
    std::vector<T*> removed;
    for (T* element : elements_) (removes(*element) ? removed : kept).push_back(element);
    if (removed.empty()) return;
    elements_.swap(kept);
    if constexpr (kIndexed) indexValid_ = false;
    for (T* element : removed) Drop(element);
  }

  // Drops every element.
  void Clear() {
    std::vector<T*> elements;
    elements.swap(elements_);
    if constexpr (kIndexed) {
      index_.clear();
      indexValid_ = true;
    }
    for (T* element : elements) Drop(element);
  }

  // Makes the next ID lookup rebuild the index (a held element was renamed).
  void InvalidateIndex() { indexValid_ = false; }

  // Same count as `theirs` and each element with an equal one in `theirs`.
  // `key` groups the candidates: equal elements must have equal keys.
  template <class Key>
  bool SameElements(const std::vector<T*>& theirs, Key key) const {
    if (elements_.size() != theirs.size()) return false;
    std::unordered_multimap<decltype(key(*elements_.front())), const T*> byKey;
    byKey.reserve(theirs.size());
    for (const T* element : theirs) byKey.emplace(key(*element), element);
    return std::all_of(elements_.begin(), elements_.end(), [&byKey, &key](const T* element) {
      const auto range = byKey.equal_range(key(*element));
      return std::any_of(range.first, range.second,
                         [element](const auto& entry) { return *element == *entry.second; });
    });
  }

 private:
  std::size_t ScanForID(const AQVString& id) const {
    const auto it = std::find_if(elements_.begin(), elements_.end(),
                                 [&id](const T* element) { return element->GetID() == id; });
    return static_cast<std::size_t>(it - elements_.begin());
  }

  // Where the element that Find gives stands, or the element count.
  std::size_t PositionOfID(const AQVString& id) const {
    if constexpr (kIndexed) {
      const T* found = Find(id);
      if (found == nullptr) return elements_.size();
      return static_cast<std::size_t>(std::find(elements_.begin(), elements_.end(), found) -
                                      elements_.begin());
    } else {
      return ScanForID(id);
    }
  }

  void EraseAt(std::size_t position) {
    T* element = elements_[position];
    elements_.erase(elements_.begin() + static_cast<std::ptrdiff_t>(position));
    if constexpr (kIndexed) {
      if (indexValid_) {
        const auto it = index_.find(element->GetID());
        if (it != index_.end() && it->second == element) {
          index_.erase(it);
        } else {
          indexValid_ = false;
        }
      }
    }
    Drop(element);
  }

  // Detaches and releases an element the list no longer holds.
  void Drop(T* element) {
    owner_->Detach(element);
    element->Release();
  }

  Owner* owner_;
  std::vector<T*> elements_;
  mutable std::unordered_map<AQVString, T*> index_;
  mutable bool indexValid_ = true;
};

}  // namespace ppdforge
