#include "host/std_str.h"

#include <algorithm>
#include <cstring>
#include <utility>

CStdStr::CStdStr(const char* text) : CStdStr(std::string_view(text == nullptr ? "" : text)) {}

CStdStr::CStdStr(std::string_view text) {
  Assign(text);
}

CStdStr::CStdStr(const CStdStr& other) {
  Assign(other.View());
}

CStdStr::CStdStr(CStdStr&& other) noexcept {
  Steal(other);
}

CStdStr::~CStdStr() {
  Free();
}

CStdStr& CStdStr::operator=(const CStdStr& other) {
  Assign(other.View());
  return *this;
}

CStdStr& CStdStr::operator=(CStdStr&& other) noexcept {
  if (this == &other) return *this;
  Free();
  Steal(other);
  return *this;
}

CStdStr& CStdStr::operator=(std::string_view text) {
  Assign(text);
  return *this;
}

// The text may be a part of this string's own.
void CStdStr::Assign(std::string_view text) {
  if (text.size() > capacity_) {
    const std::size_t capacity = std::max<std::size_t>(text.size(), capacity_ + capacity_ / 2);
    char* heap = new char[capacity + 1];
    std::memcpy(heap, text.data(), text.size());
    Free();
    storage_.heap = heap;
    capacity_ = capacity;
    heap[text.size()] = '\0';
  } else {
    char* target = IsInline() ? storage_.inline_text : storage_.heap;
    if (!text.empty()) std::memmove(target, text.data(), text.size());
    target[text.size()] = '\0';
  }
  length_ = text.size();
}

void CStdStr::Steal(CStdStr& other) noexcept {
  storage_ = other.storage_;
  length_ = std::exchange(other.length_, 0);
  capacity_ = std::exchange(other.capacity_, kInlineCapacity);
  other.storage_.inline_text[0] = '\0';
}

void CStdStr::Free() noexcept {
  if (!IsInline()) delete[] storage_.heap;
}
