#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

namespace tessel {

/// Bytes that grow at the end. It is built on realloc, which moves large blocks by remapping their
/// pages: growing and giving back what is spare cost no copy. Raises std::bad_alloc and keeps its
/// bytes when there is no memory.
class GrowBuffer {
 public:
  GrowBuffer() = default;
  GrowBuffer(GrowBuffer&& other) noexcept
      : data_(std::exchange(other.data_, nullptr)),
        size_(std::exchange(other.size_, 0)),
        capacity_(std::exchange(other.capacity_, 0)) {}
  GrowBuffer& operator=(GrowBuffer&& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
    return *this;
  }
  ~GrowBuffer() {
    if (capacity_ != 0) std::free(data_);
  }
  /// Bytes of somebody else, who keeps them for as long as the buffer lives: they take no memory of
  /// its own, and it must not be changed.
  [[nodiscard]] static GrowBuffer Over(const std::byte* bytes, std::size_t size) {
    GrowBuffer buffer;
    buffer.data_ = const_cast<std::byte*>(bytes);
    buffer.size_ = size;
    return buffer;
  }

  [[nodiscard]] std::size_t Size() const { return size_; }
  [[nodiscard]] std::size_t Capacity() const { return capacity_; }
  [[nodiscard]] const std::byte* Data() const { return data_; }

  template <class T>
  void Push(T item) {
    static_assert(std::is_trivially_copyable_v<T>);
    if (capacity_ - size_ < sizeof(T)) [[unlikely]]
      GrowBy(sizeof(T));
    std::memcpy(data_ + size_, &item, sizeof(T));
    size_ += sizeof(T);
  }
  void Append(const void* bytes, std::size_t count) {
    if (capacity_ - size_ < count) [[unlikely]]
      GrowBy(count);
    if (count != 0) std::memcpy(data_ + size_, bytes, count);
    size_ += count;
  }
  void AppendZeros(std::size_t count) {
    if (capacity_ - size_ < count) GrowBy(count);
    if (count != 0) std::memset(data_ + size_, 0, count);
    size_ += count;
  }

  /// The item at `index`, counted in items of type T from 0.
  template <class T>
  [[nodiscard]] T At(std::size_t index) const {
    T item;
    std::memcpy(&item, data_ + index * sizeof(T), sizeof(T));
    return item;
  }
  template <class T>
  void Put(std::size_t index, T item) {
    std::memcpy(data_ + index * sizeof(T), &item, sizeof(T));
  }

  void Truncate(std::size_t size) { size_ = std::min(size_, size); }
  void Reserve(std::size_t capacity) {
    if (capacity > capacity_) Resize(capacity);
  }
  /// Gives back what is not used.
  void Shrink() {
    if (size_ < capacity_) Resize(size_);
  }

 private:
  void GrowBy(std::size_t count) {
    constexpr std::size_t least = 64;
    Resize(std::max({size_ + count, capacity_ * 2, least}));
  }
  void Resize(std::size_t capacity) {
    if (capacity == 0) {
      std::free(std::exchange(data_, nullptr));
    } else {
      void* moved = std::realloc(data_, capacity);
      if (moved == nullptr) throw std::bad_alloc();
      data_ = static_cast<std::byte*>(moved);
    }
    capacity_ = capacity;
  }

  std::byte* data_ = nullptr;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace tessel
