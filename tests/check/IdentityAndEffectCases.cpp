// Items that get into each other's way, and columns without effect.
#include "RuleCase.h"

using checktest::lasting;
using checktest::soundItem;

std::vector<checktest::RuleCase> checktest::identityCases()
{
  return {
      lasting("no-root-id", ",Sch,Col,,,1,setB,getB,,,,\n", 1, 1, "a,Sch,Col,,,1,setB,getB,,,,\n"),
      lasting("duplicate-root-id", "a.b,Sch,Col,,,1,setB,getB,,,,\na.b,Sch,Other,,,1,setB,getB,,,,\n", 2, 1,
              "a.b,Sch,Col,,,1,setB,getB,,,,\na.c,Sch,Other,,,1,setB,getB,,,,\n"),
      lasting("duplicate-root-id", "a.b,,,,,1,setB,getB,,,,\n" + soundItem + "a.b,,,,,1,setB,getB,,,,\n", 3, 1,
              "a.b,,,,,1,setB,getB,,,,\na.bc,,,,,1,setB,getB,,,,\n"),
      lasting("root-id-in-both-stores", "a.b,Sch,Col,,,1,setB,getB,,,,\na.b,,,,,1,setB,getB,,,,\n", 2, 1,
              "a.b,Sch,Col,,,1,setB,getB,,,,\na.c,,,,,1,setB,getB,,,,\n"),
      lasting("root-id-in-both-stores", "a.b,,,,,1,setB,getB,,,,\na.b,Sch,Col,,,1,setB,getB,,,,\n", 1, 1, soundItem),
      lasting("duplicate-cell", "a.b,Sch,Col,,,1,setB,getB,,,,\nc.d,Sch,Col,,,1,setD,getD,,,,\n", 2, 9,
              "a.b,Sch,Col,,,1,setB,getB,,,,\nc.d,Other,Col,,,1,setD,getD,,,,\n"),
      lasting("duplicate-cell", "a-1,Sch,Col,Row,1,1,setB,getB,,,,\na-2,Sch,Col,Row,1,1,setB,getB,,,,\n", 2, 9,
              "a-1,Sch,Col,Row,1,1,setB,getB,,,,\na-2,Sch,Col,Row,2,1,setB,getB,,,,\n"),
      lasting(
          "index-name-disagrees",
          "a-1,Sch,Col,Row,1,1,setB,getB,,,,\na-2,Sch,Col,Row,2,1,setB,getB,,,,\na-3,Sch,Col,Rwo,3,1,setB,getB,,,,\n",
          3, 13, "a-1,Sch,Col,Row,1,1,setB,getB,,,,\na-2,Other,Col,Rwo,2,1,setB,getB,,,,\n"),
      lasting("index-name-disagrees", "a-1,Sch,Col,Row,1,1,setB,getB,,,,\nb,Sch,Single,,,1,setC,getC,,,,\n", 2, 14,
              "a-1,Sch,Col,Row,1,1,setB,getB,,,,\nb,Other,Single,,,1,setC,getC,,,,\n"),
      lasting("index-value-without-name", "a-1,Sch,Col,,1,1,setB,getB,,,,\n", 1, 14, "a-1,,,,1,1,setB,getB,,,,\n"),
      lasting("index-name-without-value", "a-1,Sch,Col,Row,,1,setB,getB,,,,\n", 1, 17,
              "a-1,Sch,Col,Row,0,1,setB,getB,,,,\n"),
      lasting("suffix-disagrees", "key-2,,,,1,,setB,getB,,,,\n", 1, 10, "key-2,,,,2,,setB,getB,,,,\n"),
      lasting("suffix-disagrees", "key-2,,,,,,setB,getB,,,,\n", 1, 10, "key2,,,,1,,setB,getB,,,,\n"),
      lasting("suffix-disagrees", "key-,,,,1,,setB,getB,,,,\n", 1, 9, "a-1,Sch,Col,Row,x,1,setB,getB,,,,\n"),
      lasting("differs-only-in-case", "a.b,Sch,Col,,,1,setB,getB,,,,\nc.d,SCH,Other,,,1,setD,getD,,,,\n", 2, 5,
              "a.b,Sch,Col,,,1,setB,getB,,,,\nc.d,Other,COL,,,1,setD,getD,,,,\n"),
      lasting("differs-only-in-case", "a.b,Sch,Col,,,1,setB,getB,,,,\nc.d,Sch,COL,,,1,setD,getD,,,,\n", 2, 9,
              "a.b,Sch,Col,,,1,setB,getB,,,,\nc.d,Sch,Color,,,1,setB,getB,,,,\n"),
      lasting("differs-only-in-case", "a.b,Sch,Col,,,1,setB,getB,,,,\nA.b,Sch,Other,,,1,setD,getD,,,,\n", 2, 1,
              soundItem),
      lasting("differs-only-in-case", "a.b,Sch,Col,,,1,setB,getB,,,,\nc.d,Sch,Other,,,1,setb,getD,,,,\n", 2, 19,
              soundItem),
  };
}

std::vector<checktest::RuleCase> checktest::effectCases()
{
  const std::string grouped = "a.b,Sch,Col,,,1,setB,getB,,Ports,,\n";
  const std::string second = "c.d,Sch,Other,,,1,setD,getD,,Ports,,\n";
  return {
      lasting("unreachable-item", "a.b,,,,,1,,getB,,,,\n", 1, 11, "a.b,,,,,1,setB,,,,,\n"),
      lasting("unreachable-item", "a.b,Sch,,,,1,,,,,,\n", 1, 9, "a.b,Sch,Col,,,1,,,,,,\n"),
      lasting("schema-without-column", "a.b,Sch,,,,1,setB,,,,,\n", 1, 9, "a.b,Sch,Col,,,1,setB,,,,,\n"),
      lasting("column-without-schema", "a.b,,Col,,,1,setB,getB,,,,\n", 1, 5, "a.b,,,,,1,setB,getB,,,,\n"),
      lasting("index-name-without-schema", "a.b,,,Row,1,1,setB,getB,,,,\n", 1, 7, "a.b,,,,1,1,setB,getB,,,,\n"),
      lasting("swapped-callbacks", "a.b,Sch,Col,,,1,getB,setB,,,,\n", 1, 17, "a.b,Sch,Col,,,1,getter,setter,,,,\n"),
      lasting("swapped-callbacks", "a.b,Sch,Col,,,1,,setB,,,,\n", 1, 18, "a.b,Sch,Col,,,1,,getB,,,,\n"),
      lasting("group-of-one", grouped + second + "e.f,Sch,Third,,,1,setF,getF,,Prots,,\n", 3, 30, grouped + second),
      lasting("group-across-schemas", grouped + "c.d,Else,Col,,,1,setD,getD,,Ports,,\n", 2, 29, grouped + second),
      lasting("group-without-setter", grouped + "c.d,Sch,Other,,,1,,getD,,Ports,,\n", 2, 26, grouped + second),
      lasting("group-on-local-item", "a.b,,,,,1,setB,getB,,Ports,,\n", 1, 22, "a.b,,,,,1,setB,getB,,,,\n"),
      lasting("encrypted-local-item", "a.b,,,,,,setB,getB,,,,true\n", 1, 23, "a.b,Sch,Col,,,,setB,getB,,,,true\n"),
      lasting("secret-not-encrypted", "sip.password,Sch,Col,,,,setB,,,,,\n", 1, 1,
              "sip.password,Sch,Col,,,,setB,,,,,true\n"),
      lasting("secret-not-encrypted", "line.pin-1,Sch,Col,Row,1,,setB,,,,,\n", 1, 1, "line.pin-1,,,,1,,setB,,,,,\n"),
  };
}
