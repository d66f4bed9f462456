#include "platform/x_key_map.h"

#include <algorithm>
#include <bitset>
#include <string_view>

namespace platform {
namespace {

/// Symbols that follow each other as their codes do. A symbol below 256 is the Latin-1 character.
struct Run {
  std::uint32_t symbol;
  std::uint32_t count;
  std::uint8_t code;
};

constexpr Run kDigitsOfNumberPad[] = {
    {0xffb0, 10, 0x60},  // VK_NUMPAD0 to VK_NUMPAD9
    {0xffac, 1, 0x6C},   // VK_SEPARATOR
    {0xffae, 1, 0x6E},   // VK_DECIMAL
};

constexpr Run kKeys[] = {
    {'0', 10, '0'},
    {'A', 26, 'A'},
    {'a', 26, 'A'},
    {' ', 1, 0x20},
    {0xff08, 2, 0x08},   // VK_BACK, VK_TAB
    {0xfe20, 1, 0x09},   // Tab with Shift
    {0xff0b, 1, 0x0C},   // VK_CLEAR
    {0xff0d, 1, 0x0D},   // VK_RETURN
    {0xff13, 1, 0x13},   // VK_PAUSE
    {0xff14, 1, 0x91},   // VK_SCROLL
    {0xff1b, 1, 0x1B},   // VK_ESCAPE
    {0xff21, 1, 0x19},   // VK_KANJI
    {0xff22, 1, 0x1D},   // VK_NONCONVERT
    {0xff23, 1, 0x1C},   // VK_CONVERT
    {0xff27, 1, 0x15},   // VK_KANA, the key of hiragana and katakana
    {0xff2d, 1, 0x15},   // VK_KANA
    {0xff31, 1, 0x15},   // VK_HANGUL
    {0xff34, 1, 0x19},   // VK_HANJA
    {0xff50, 1, 0x24},   // VK_HOME
    {0xff51, 4, 0x25},   // VK_LEFT, VK_UP, VK_RIGHT, VK_DOWN
    {0xff55, 3, 0x21},   // VK_PRIOR, VK_NEXT, VK_END
    {0xff60, 1, 0x29},   // VK_SELECT
    {0xff61, 1, 0x2C},   // VK_SNAPSHOT
    {0xff62, 1, 0x2B},   // VK_EXECUTE
    {0xff63, 1, 0x2D},   // VK_INSERT
    {0xff67, 1, 0x5D},   // VK_APPS
    {0xff69, 1, 0x03},   // VK_CANCEL
    {0xff6a, 1, 0x2F},   // VK_HELP
    {0xff6b, 1, 0x03},   // Break
    {0xff7f, 1, 0x90},   // VK_NUMLOCK
    {0xff8d, 1, 0x0D},   // the number pad without Num Lock, and its operators
    {0xff95, 1, 0x24},   //
    {0xff96, 4, 0x25},   //
    {0xff9a, 3, 0x21},   //
    {0xff9d, 1, 0x0C},   //
    {0xff9e, 2, 0x2D},   // VK_INSERT, VK_DELETE
    {0xffaa, 2, 0x6A},   // VK_MULTIPLY, VK_ADD
    {0xffad, 1, 0x6D},   // VK_SUBTRACT
    {0xffaf, 1, 0x6F},   // VK_DIVIDE
    {0xffbe, 24, 0x70},  // VK_F1 to VK_F24
    {0xffe1, 4, 0xA0},   // VK_LSHIFT, VK_RSHIFT, VK_LCONTROL, VK_RCONTROL
    {0xffe5, 1, 0x14},   // VK_CAPITAL
    {0xffe9, 2, 0xA4},   // VK_LMENU, VK_RMENU
    {0xfe03, 1, 0xA5},   // AltGr
    {0xffe7, 2, 0xA4},   // Meta
    {0xffeb, 2, 0x5B},   // VK_LWIN, VK_RWIN
    {0xffff, 1, 0x2E},   // VK_DELETE
    // The keys of XFree86 for browsers, sound and programs.
    {0x1008ff26, 2, 0xA6},  // VK_BROWSER_BACK, VK_BROWSER_FORWARD
    {0x1008ff29, 1, 0xA8},  // VK_BROWSER_REFRESH
    {0x1008ff28, 1, 0xA9},  // VK_BROWSER_STOP
    {0x1008ff1b, 1, 0xAA},  // VK_BROWSER_SEARCH
    {0x1008ff30, 1, 0xAB},  // VK_BROWSER_FAVORITES
    {0x1008ff18, 1, 0xAC},  // VK_BROWSER_HOME
    {0x1008ff12, 1, 0xAD},  // VK_VOLUME_MUTE
    {0x1008ff11, 1, 0xAE},  // VK_VOLUME_DOWN
    {0x1008ff13, 1, 0xAF},  // VK_VOLUME_UP
    {0x1008ff17, 1, 0xB0},  // VK_MEDIA_NEXT_TRACK
    {0x1008ff16, 1, 0xB1},  // VK_MEDIA_PREV_TRACK
    {0x1008ff15, 1, 0xB2},  // VK_MEDIA_STOP
    {0x1008ff14, 1, 0xB3},  // VK_MEDIA_PLAY_PAUSE
    {0x1008ff19, 1, 0xB4},  // VK_LAUNCH_MAIL
    {0x1008ff32, 1, 0xB5},  // VK_LAUNCH_MEDIA_SELECT
    {0x1008ff33, 1, 0xB6},  // VK_LAUNCH_APP1
    {0x1008ff1d, 1, 0xB7},  // VK_LAUNCH_APP2, the calculator
    {0x1008ff2f, 1, 0x5F},  // VK_SLEEP
};

/// Looked up after all others: where a layout has a letter or a digit on the same key, that is it.
constexpr Run kPunctuation[] = {
    {';', 1, 0xBA},   // VK_OEM_1
    {'=', 1, 0xBB},   // VK_OEM_PLUS
    {'+', 1, 0xBB},   //
    {',', 3, 0xBC},   // VK_OEM_COMMA, VK_OEM_MINUS, VK_OEM_PERIOD
    {'/', 1, 0xBF},   // VK_OEM_2
    {'`', 1, 0xC0},   // VK_OEM_3
    {'[', 3, 0xDB},   // VK_OEM_4, VK_OEM_5, VK_OEM_6
    {'\'', 1, 0xDE},  // VK_OEM_7
    {'<', 1, 0xE2},   // VK_OEM_102, right of the left Shift
};
constexpr std::uint8_t kOem8 = 0xDF;

/// The writing keys of a US keyboard, from the number that X gives to the first of each row.
struct Row {
  std::size_t first;
  std::string_view keys;
};
constexpr Row kUsRows[] = {
    {10, "1234567890-="}, {24, "QWERTYUIOP[]"}, {38, "ASDFGHJKL;'`"}, {51, "\\ZXCVBNM,./"}};

std::uint8_t CodeOf(std::span<const Run> runs, std::uint32_t symbol) {
  for (const Run& run : runs) {
    if (symbol - run.symbol < run.count) {
      return static_cast<std::uint8_t>(run.code + (symbol - run.symbol));
    }
  }
  return 0;
}

/// The first symbol that has a code decides.
std::uint8_t CodeOf(std::span<const Run> runs, std::span<const std::uint32_t> symbols) {
  for (const std::uint32_t symbol : symbols) {
    if (const std::uint8_t code = CodeOf(runs, symbol); code != 0) return code;
  }
  return 0;
}

std::uint8_t CodeOfKey(std::span<const std::uint32_t> symbols) {
  const std::uint8_t code = CodeOf(kKeys, symbols);
  return code != 0 ? code : CodeOf(kPunctuation, symbols);
}

}  // namespace

KeyMap MakeKeyMap(std::span<const std::uint32_t> symbols, std::size_t columns, std::size_t first) {
  KeyMap map;
  if (columns == 0) return map;
  // Two levels of two layouts; further ones are for accents and the like.
  const std::size_t used = std::min<std::size_t>(columns, 4);
  const auto symbols_of = [&](std::size_t key) {
    const std::size_t at = (key - first) * columns;
    return key < first || at + columns > symbols.size() ? std::span<const std::uint32_t>()
                                                        : symbols.subspan(at, used);
  };

  std::bitset<256> taken;
  for (std::size_t key = first; key < map.size(); ++key) {
    const std::uint8_t digit = CodeOf(kDigitsOfNumberPad, symbols_of(key));
    const std::uint8_t code = CodeOfKey(symbols_of(key));
    map[key] = {code != 0 ? code : digit, digit != 0 ? digit : code};
    taken.set(code);
  }
  for (const Row& row : kUsRows) {
    for (std::size_t i = 0; i < row.keys.size(); ++i) {
      const std::size_t key = row.first + i;
      const auto own = symbols_of(key);
      const bool blank =
          std::all_of(own.begin(), own.end(), [](auto symbol) { return symbol == 0; });
      if (blank || map[key].code != 0) continue;
      const std::uint32_t place = static_cast<unsigned char>(row.keys[i]);
      const std::uint8_t code = CodeOfKey(std::span(&place, 1));
      const std::uint8_t free_code = taken[code] ? kOem8 : code;
      map[key] = {free_code, free_code};
    }
  }
  return map;
}

}  // namespace platform
