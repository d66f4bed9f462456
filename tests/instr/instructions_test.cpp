// Instructions whose last input may be repeated, where the host says that there are fewer.

#include "tests/instr/table.h"

namespace {

TEST(Instructions, CountsBelowTheDeclaredInputs) {
  const TranscriptRow rows[] = {
      // The first boolean is read all the same.
      {R"({"instr":"_Nuv_Boolean_And_","in":[true,false],"count":0})",
       R"({"status":0,"out":[true]})"},
      {R"({"instr":"_Nuv_Boolean_Or_","in":[true,false],"count":0})",
       R"({"status":0,"out":[true]})"},
      {R"({"instr":"_Nuv_Boolean_Xor_","in":[true,false],"count":0})",
       R"({"status":0,"out":[true]})"},
      {R"({"instr":"_Nuv_Numeric_CMean_","in":[1],"count":0})", R"({"status":3,"out":[0]})"},
      {R"({"instr":"_Nuv_Numeric-Stat_CCp_","in":[9,1,2,4],"count":1})",
       R"({"status":3,"out":[0]})"},
      {R"({"instr":"_Nuv_String_CPrintfNumInf_","in":["%g-%g",1,2],"count":1})",
       R"({"status":0,"out":["0-0"]})"},
      {R"({"instr":"_Nuv_String_CPrintfNumInf_","in":["%g-%g",1,2],"count":0})",
       R"({"status":0,"out":["0-0"]})"},
      {R"({"instr":"_Nuv_Geometric_MeanPtInf_","count":0,"prev":[[7 7]]})",
       R"({"status":3,"out":[[7 7]]})"},
      {R"({"instr":"_Nuv_Geometric_CPts2LnDistInf_","count":1,"prev":[[7]]})",
       R"({"status":0,"out":[[],1.7976931348623157e+308,-1.7976931348623157e+308,-1,-1]})"},
      {R"({"instr":"_Nuv_Array_CPArrAppend_","in":[[[1 2]]],"count":1})",
       R"({"status":0,"out":[[[1 2]]]})"},
      {R"({"instr":"_Nuv_Array_CPArrInsert_","in":[[[1 2]],9],"count":2})",
       R"({"status":0,"out":[[[1 2]]]})"},
      {R"({"instr":"_Nuv_Array_CPArrCreateInf_","count":0})", R"({"status":0,"out":[[]]})"},
  };
  CheckTranscript(rows);
}

}  // namespace
