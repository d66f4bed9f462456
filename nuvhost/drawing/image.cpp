#include "nuvhost/drawing/image.h"

#include <string_view>

namespace nuvhost {
namespace {

constexpr std::string_view kPngSignature = "\x89PNG\r\n\x1A\n";
constexpr std::string_view kJpegStart = "\xFF\xD8";
constexpr std::string_view kJpegEnd = "\xFF\xD9";
constexpr const char* kEndsEarly = "the file ends too early";
constexpr const char* kDamaged = "the file is damaged: ";

struct Size {
  std::uint32_t width;
  std::uint32_t height;
};

/// The big-endian number in `count` bytes that are there.
std::uint32_t NumberAt(std::string_view bytes, std::size_t position, std::size_t count) {
  std::uint32_t number = 0;
  for (const char c : bytes.substr(position, count)) {
    number = number << 8 | static_cast<unsigned char>(c);
  }
  return number;
}

/// Steps from chunk to chunk, from the header to the end mark.
std::optional<Size> PngSize(std::string_view bytes, std::string& reason) {
  constexpr std::size_t kFrame = 12;  // length, name and check sum of a chunk
  constexpr std::size_t kHeader = 13;
  constexpr std::uint32_t kMost = 0x7FFFFFFF;
  std::optional<Size> size;
  for (std::size_t position = kPngSignature.size(); bytes.size() - position >= kFrame;) {
    const std::size_t length = NumberAt(bytes, position, 4);
    const std::string_view name = bytes.substr(position + 4, 4);
    if (length > bytes.size() - position - kFrame) break;
    if (!size) {
      if (name != "IHDR" || length != kHeader) {
        reason = std::string(kDamaged) + "it does not begin with a header";
        return std::nullopt;
      }
      size = {NumberAt(bytes, position + 8, 4), NumberAt(bytes, position + 12, 4)};
      if (size->width > kMost || size->height > kMost) size = {0, 0};
    }
    if (name == "IEND") return size;
    position += kFrame + length;
  }
  reason = kEndsEarly;
  return std::nullopt;
}

/// The size in a frame header, if the segment with this marker is one.
bool IsFrameHeader(unsigned char marker) {
  return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

/// Steps from segment to segment, from the start mark to the frame header.
std::optional<Size> JpegSize(std::string_view bytes, std::string& reason) {
  constexpr std::size_t kFrameHeader = 8;
  std::size_t position = kJpegStart.size();
  while (position < bytes.size()) {
    if (bytes[position] != '\xFF') {
      reason = std::string(kDamaged) + "no marker where a segment ends";
      return std::nullopt;
    }
    position = bytes.find_first_not_of('\xFF', position);
    if (position == std::string_view::npos) break;
    const auto marker = static_cast<unsigned char>(bytes[position++]);
    if (marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7)) continue;  // stand alone
    if (marker == 0x00 || marker == 0xD8 || marker == 0xD9 || marker == 0xDA) {
      reason = std::string(kDamaged) + "no frame header before the pixels";
      return std::nullopt;
    }
    if (bytes.size() - position < 2) break;
    const std::size_t length = NumberAt(bytes, position, 2);
    if (length < 2 || (IsFrameHeader(marker) && length < kFrameHeader)) {
      reason = std::string(kDamaged) + "a segment is too short";
      return std::nullopt;
    }
    if (length > bytes.size() - position) break;
    if (!IsFrameHeader(marker)) {
      position += length;
      continue;
    }
    if (bytes.find(kJpegEnd, position + length) == std::string_view::npos) break;
    return Size{NumberAt(bytes, position + 5, 2), NumberAt(bytes, position + 3, 2)};
  }
  reason = kEndsEarly;
  return std::nullopt;
}

std::string Base64(std::string_view bytes) {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::string_view group = bytes.substr(i, 3);
    const std::uint32_t bits = NumberAt(group, 0, 3) << 8 * (3 - group.size());
    for (std::size_t digit = 0; digit < 4; ++digit) {
      text += digit <= group.size() ? kDigits[bits >> (18 - 6 * digit) & 63] : '=';
    }
  }
  return text;
}

}  // namespace

std::optional<Image> ReadImage(std::string bytes, std::string& reason) {
  const bool is_png = bytes.starts_with(kPngSignature);
  if (!is_png && !bytes.starts_with(kJpegStart)) {
    reason = bytes.empty() ? "the file is empty" : "the file is neither PNG nor JPEG";
    return std::nullopt;
  }
  const std::optional<Size> size = is_png ? PngSize(bytes, reason) : JpegSize(bytes, reason);
  if (!size) return std::nullopt;
  if (size->width == 0 || size->height == 0) {
    reason = std::string(kDamaged) + "its header tells no size";
    return std::nullopt;
  }
  return Image{std::move(bytes), is_png ? "image/png" : "image/jpeg", size->width, size->height};
}

std::string DataUri(const Image& image) {
  return std::string("data:") + image.media_type + ";base64," + Base64(image.bytes);
}

}  // namespace nuvhost
