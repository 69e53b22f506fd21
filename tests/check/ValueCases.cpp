// User data that cannot be reset or reloaded, and defaults that do harm or nothing.
#include "RuleCase.h"

using checktest::lasting;
using checktest::mendable;

std::vector<checktest::RuleCase> checktest::userDataCases()
{
  return {
      lasting("user-data-on-local-item", "a.b,,,,,1,setB,getB,user,,,\n", 1, 21, "a.b,Sch,Col,,,1,setB,getB,user,,,\n"),
      lasting("user-data-without-getter", "a.b,Sch,Col,,,1,setB,,user,,,\n", 1, 22, "a.b,Sch,Col,,,1,setB,,,,,\n"),
      lasting("user-data-without-setter", "a.b,Sch,Col,,,1,,getB,user,,,\n", 1, 17, "a.b,Sch,Col,,,1,,getB,,,,\n"),
      {"user-data-without-column", "a.b,Sch,,,,1,setB,getB,user,,,\n", 1, 9, "a.b,Sch,Col,,,1,setB,getB,user,,,\n",
       "a.b,Sch,,,,1,setB,getB,user,,,\n"},
      lasting("user-data-indexed", "a-1,Sch,Col,Row,1,1,setB,getB,user,,,\n", 1, 31,
              "a-1,Sch,Col,Row,1,1,setB,getB,,,,\n"),
      lasting("ambiguous-column", "a.b,Names,name,,,1,setB,getB,user,,,\n", 1, 11,
              "a.b,Names,Name_,,,1,setB,getB,user,,,\n"),
      lasting("ambiguous-column", "a.b,LineKeys,Line,,,1,setB,getB,user,,,\n", 1, 14,
              "a.b,LineKeys,line,,,1,setB,getB,user,,,\n"),
      lasting("ambiguous-import", "a.b,LineKeys,Line,,,1,setB,getB,,,,\n", 1, 14, "a.b,Keys,Line,,,1,setB,getB,,,,\n"),
      lasting("ambiguous-import", "a-1,Keys,Row,RowId,1,1,setB,getB,,,,\n", 1, 10,
              "a-1,Keys,RowIds,RowId,1,1,setB,getB,,,,\n"),
      lasting("ambiguous-import", "a-1,Keys,try,Row,1,1,setB,getB,,,,\n", 1, 10, "a,Keys,try,,,1,setB,getB,,,,\n"),
  };
}

std::vector<checktest::RuleCase> checktest::valueCases()
{
  return {
      lasting("default-not-escaped", "a.b,Sch,Col,,,Q&A,setB,getB,user,,,\n", 1, 16,
              "a.b,Sch,Col,,,Q&A,setB,getB,,,,\n"),
      lasting("default-not-escaped", "a.b,Sch,Col,,,x,setB,getB,user,,<y,\n", 1, 33,
              "a.b,Sch,Col,,,x\"'>,setB,getB,,,>y,\n"),
      lasting("default-not-escaped", "a.b,Sch,Col,,,a]]>,setB,getB,user,,,\n", 1, 16,
              "a.b,Sch,Col,,,a]>,setB,getB,user,,,\n"),
      mendable("alternative-equals-default", "a.b,Sch,Col,,,1,setB,getB,,,1,\n", 1, 29,
               "a.b,Sch,Col,,,1,setB,getB,,,,\n"),
      lasting("alternative-never-used", "a.b,,,,,1,setB,getB,,,2,\n", 1, 23, "a.b,Sch,Col,,,1,setB,getB,,,2,\n"),
      lasting("alternative-never-used", "a.b,Sch,Col,,,1,,getB,,,2,\n", 1, 25, "a.b,Sch,Col,,,1,,,,,2,\n"),
      lasting("flag-in-alternative", "a.b,Sch,Col,,,,setB,getB,,,true,\n", 1, 28,
              "a.b,Sch,Col,,,false,setB,getB,,,true,\n"),
      lasting("default-of-secret", "a.pin,Sch,Col,,,0000,setB,,,,,true\n", 1, 17, "a.pin,Sch,Col,,,,setB,,,,,true\n"),
  };
}
