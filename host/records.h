// The descriptor of an instruction and its records, as the host reads them in place.
//
// The host walks these records by their offsets, so their layout is binding; each has its
// offsets in a column of comments and asserts them below. They are the library's: it fills them
// in InitPlugins and empties them in ReleasePlugins, and between the two the host only reads them,
// on any thread. Every text is static and ends with a zero byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "host/choice_map.h"
#include "host/nuv_object.h"
#include "host/std_vector.h"

/// The type of a parameter: the low byte is the element's kind, 256 a single value, 512 an array.
enum NuvParamType : std::uint32_t {
  NUV_PARAM_BOOLEAN = 256,
  NUV_PARAM_INTEGER = 257,  ///< constant parameters only
  NUV_PARAM_NUMBER = 258,
  NUV_PARAM_STRING = 259,
  NUV_PARAM_POINT = 260,
  NUV_PARAM_LINE = 261,
  NUV_PARAM_CHOICE = 263,  ///< constant parameters only
  NUV_PARAM_BOOLEAN_ARRAY = 512,
  NUV_PARAM_NUMBER_ARRAY = 514,
  NUV_PARAM_STRING_ARRAY = 515,
  NUV_PARAM_POINT_ARRAY = 516,
  NUV_PARAM_LINE_ARRAY = 517,
};

/// The type of the value that a parameter holds; the empty value's for a type that there is not.
constexpr NUV_OBJ_TYPE NuvValueType(std::uint32_t parameter_type) {
  switch (parameter_type) {
    case NUV_PARAM_BOOLEAN: return NUV_OBJ_BOOL;
    case NUV_PARAM_INTEGER:
    case NUV_PARAM_CHOICE:
    case NUV_PARAM_NUMBER: return NUV_OBJ_DOUBLE;
    case NUV_PARAM_STRING: return NUV_OBJ_STRING;
    case NUV_PARAM_POINT: return NUV_OBJ_POINT;
    case NUV_PARAM_LINE: return NUV_OBJ_LINE;
    case NUV_PARAM_BOOLEAN_ARRAY: return NUV_OBJ_BOOL_VECTOR;
    case NUV_PARAM_NUMBER_ARRAY: return NUV_OBJ_DOUBLE_VECTOR;
    case NUV_PARAM_STRING_ARRAY: return NUV_OBJ_STRING_VECTOR;
    case NUV_PARAM_POINT_ARRAY: return NUV_OBJ_POINT_VECTOR;
    case NUV_PARAM_LINE_ARRAY: return NUV_OBJ_LINE_VECTOR;
    default: return NUV_OBJ_EMPTY;
  }
}

/// One input.
struct ParameterRecord {
  std::uint32_t type = 0;             //  0  NuvParamType
  std::uint32_t padding4 = 0;         //  4
  const char* name = nullptr;         //  8
  const char* description = nullptr;  // 16  may be null
  CNuvObject default_value;           // 24
  std::uint32_t index = 0;            // 40  position among the inputs, from 0
  std::uint32_t padding44 = 0;        // 44
};
static_assert(std::is_standard_layout_v<ParameterRecord> && sizeof(ParameterRecord) == 48);
static_assert(offsetof(ParameterRecord, name) == 8);
static_assert(offsetof(ParameterRecord, description) == 16);
static_assert(offsetof(ParameterRecord, default_value) == 24);
static_assert(offsetof(ParameterRecord, index) == 40);

/// One result.
struct ResultRecord {
  std::uint32_t type = 0;             //  0  NuvParamType
  std::uint32_t padding4 = 0;         //  4
  const char* name = nullptr;         //  8
  const char* description = nullptr;  // 16  may be null
  std::uint32_t index = 0;            // 24  position among the results, from 0
  std::uint32_t padding28 = 0;        // 28
};
static_assert(std::is_standard_layout_v<ResultRecord> && sizeof(ResultRecord) == 32);
static_assert(offsetof(ResultRecord, name) == 8);
static_assert(offsetof(ResultRecord, description) == 16);
static_assert(offsetof(ResultRecord, index) == 24);

/// One constant parameter: a value fixed by the user when the instruction is set up.
struct ConstantRecord {
  std::uint32_t type = 0;             //   0  boolean, integer or choice
  std::uint32_t padding4 = 0;         //   4
  const char* group = nullptr;        //   8  heading in the host's dialog, may be null
  const char* name = nullptr;         //  16  may be null
  const char* description = nullptr;  //  24  may be null
  CNuvObject default_value;           //  32
  CNuvObject minimum;                 //  48  empty where there is no range
  CNuvObject maximum;                 //  64
  CChoiceMap choices;                 //  80  for a choice: label by key
  std::uint32_t index = 0;            // 104  position among the constant parameters, from 0
  std::uint32_t padding108 = 0;       // 108
};
static_assert(std::is_standard_layout_v<ConstantRecord> && sizeof(ConstantRecord) == 112);
static_assert(offsetof(ConstantRecord, group) == 8);
static_assert(offsetof(ConstantRecord, name) == 16);
static_assert(offsetof(ConstantRecord, description) == 24);
static_assert(offsetof(ConstantRecord, default_value) == 32);
static_assert(offsetof(ConstantRecord, minimum) == 48);
static_assert(offsetof(ConstantRecord, maximum) == 64);
static_assert(offsetof(ConstantRecord, choices) == 80);
static_assert(offsetof(ConstantRecord, index) == 104);

/// One instruction class, for the host's catalogue. All zero until it is built.
struct DescriptorRecord {
  std::uint32_t format = 0;              //   0  17 once built
  std::uint32_t padding4 = 0;            //   4
  const char* name = nullptr;            //   8  display name
  const char* category = nullptr;        //  16
  const char* identifier = nullptr;      //  24  by which hosts store the instruction
  const char* description = nullptr;     //  32
  std::uint32_t help = 0;                //  40  help-topic number
  std::uint32_t padding44 = 0;           //  44
  std::uint64_t reserved48 = 0;          //  48
  std::uint8_t reserved56 = 0;           //  56
  std::uint8_t repeatable = 0;           //  57  1: the last input may be given any number of times
  std::uint8_t padding58[2] = {};        //  58
  std::uint32_t extension_a = 0;         //  60
  std::uint32_t extension_b = 0;         //  64
  std::uint8_t padding68[12] = {};       //  68
  TStdVector<ConstantRecord> constants;  //  80
  TStdVector<ParameterRecord> inputs;    // 112
  TStdVector<ResultRecord> results;      // 144
  std::uint64_t reserved176 = 0;         // 176
};
static_assert(std::is_standard_layout_v<DescriptorRecord> && sizeof(DescriptorRecord) == 184);
static_assert(offsetof(DescriptorRecord, name) == 8);
static_assert(offsetof(DescriptorRecord, category) == 16);
static_assert(offsetof(DescriptorRecord, identifier) == 24);
static_assert(offsetof(DescriptorRecord, description) == 32);
static_assert(offsetof(DescriptorRecord, help) == 40);
static_assert(offsetof(DescriptorRecord, reserved48) == 48);
static_assert(offsetof(DescriptorRecord, reserved56) == 56);
static_assert(offsetof(DescriptorRecord, repeatable) == 57);
static_assert(offsetof(DescriptorRecord, extension_a) == 60);
static_assert(offsetof(DescriptorRecord, extension_b) == 64);
static_assert(offsetof(DescriptorRecord, constants) == 80);
static_assert(offsetof(DescriptorRecord, inputs) == 112);
static_assert(offsetof(DescriptorRecord, results) == 144);
static_assert(offsetof(DescriptorRecord, reserved176) == 176);
