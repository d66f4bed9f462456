// Image: a PNG or JPEG file as it is, and the size that its header tells.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace nuvhost {

struct Image {
  std::string bytes;
  const char* media_type;
  std::uint32_t width;  ///< in pixels, as is the height; neither is 0
  std::uint32_t height;
};

/// Takes a file's bytes for an image; nothing, and the reason in words, where they are neither a
/// PNG (ISO/IEC 15948) nor a JPEG (ITU-T T.81) or where they end too early. The pixels themselves
/// are not looked at.
std::optional<Image> ReadImage(std::string bytes, std::string& reason);

/// The image as a data URI (RFC 2397).
std::string DataUri(const Image& image);

}  // namespace nuvhost
