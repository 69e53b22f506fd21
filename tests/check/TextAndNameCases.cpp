// Bytes, blanks and flags in the columns, and names that messages cannot carry.
#include "RuleCase.h"

using checktest::lasting;
using checktest::mendable;

std::vector<checktest::RuleCase> checktest::textCases()
{
  return {
      mendable("blank-around-field", "a.b,Sch,Col,,,1, setB,getB,,,,\n", 1, 17, "a.b,Sch,Col,,,1,setB,getB,,,,\n"),
      mendable("blank-around-field", "a.b \t,Sch,Col,,,1,setB,getB,,,,\n", 1, 4, "a.b,Sch,Col,,,1,setB,getB,,,,\n"),
      mendable("blank-around-field", "a.b,Sch, Col,,,1,setB,getB,,,,\n", 1, 9, "a.b,Sch,Col,,,1,setB,getB,,,,\n"),
      lasting("blank-around-default", "a.b,Sch,Col,,,1 ,setB,getB,,,,\n", 1, 15, "a.b,Sch,Col,,,1 2,setB,getB,,,,\n"),
      lasting("blank-around-default", "a.b,Sch,Col,,,1,setB,getB,,, 2,\n", 1, 29, "a.b,Sch,Col,,,1,setB,getB,,,2,\n"),
      mendable("blank-field", "a.b,Sch,Col,,,1,setB,getB, ,,,\n", 1, 27, "a.b,Sch,Col,,,1,setB,getB,,,,\n"),
      mendable("blank-field", "a.b,Sch,Col,,,1,setB,getB,,,,\t\n", 1, 30, "a.b,Sch,Col,,,1,setB,getB,,,,\n"),
      lasting("not-utf8", "a.b,Sch,Col,,,\xc3\xa4\xe4,setB,getB,,,,\n", 1, 16,
              "a.b,Sch,Col,,,\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80,setB,getB,,,,\n"),
      lasting("not-utf8", "a.b,Sch,Col,,,\xc0\x80,setB,getB,,,,\n", 1, 15, "a.b,Sch,Col,,,\xc2\x80,setB,getB,,,,\n"),
      lasting("not-utf8", "a.b,Sch,Col,,,\xed\xa0\x80,setB,getB,,,,\n", 1, 15,
              "a.b,Sch,Col,,,\xed\x9f\xbf,setB,getB,,,,\n"),
      lasting("control-character", "a.b,Sch,Col,,,1\x07,setB,getB,,,,\n", 1, 16, "a.b,Sch,Col,,,1\t2,setB,getB,,,,\n"),
      lasting("control-character", "a.b,Sch,C\rol,,,1,setB,getB,,,,\n", 1, 10, "a.b,Sch,Col,,,1,setB,getB,,,,\n"),
      mendable("carriage-return", "a.pin,Sch,Col,,,,setB,getB,,,,true\r\n", 1, 35,
               "a.pin,Sch,Col,,,,setB,getB,,,,true\n"),
      mendable("encryption-flag", "a.pin,Sch,Col,,,,setB,getB,,,,True\n", 1, 31,
               "a.pin,Sch,Col,,,,setB,getB,,,,true\n"),
      mendable("encryption-flag", "a.pin,Sch,Col,,,,setB,getB,,,,1\n", 1, 31, "a.pin,Sch,Col,,,,setB,getB,,,,true\n"),
      mendable("encryption-flag", "a.pin,Sch,Col,,,,setB,getB,,,, true\n", 1, 31,
               "a.pin,Sch,Col,,,,setB,getB,,,,true\n"),
      lasting("encryption-flag", "a.b,Sch,Col,,,,setB,getB,,,,AES\n", 1, 29, "a.b,Sch,Col,,,,setB,getB,,,,\n"),
      mendable("encryption-denied", "a.b,Sch,Col,,,1,setB,getB,,,,False\n", 1, 30, "a.b,Sch,Col,,,1,setB,getB,,,,\n"),
      mendable("user-data-denied", "a.b,Sch,Col,,,1,setB,getB,no,,,\n", 1, 27, "a.b,Sch,Col,,,1,setB,getB,,,,\n"),
      mendable("user-data-denied", "a.b,Sch,Col,,,1,setB,getB,0,,,\n", 1, 27, "a.b,Sch,Col,,,1,setB,getB,,,,\n"),
  };
}

std::vector<checktest::RuleCase> checktest::nameCases()
{
  return {
      lasting("not-an-xml-name", "a.b,Sch,2nd,,,1,setB,getB,,,,\n", 1, 9, "a.b,Sch,nd2,,,1,setB,getB,,,,\n"),
      lasting("not-an-xml-name", "a.b,Sch,Two Words,,,1,setB,getB,,,,\n", 1, 9,
              "a.b,Two Words,Col,,,1,setB,getB,,,,\n"),
      lasting("not-an-xml-name", "a.b,Sch,Col x=\"1\",,,1,setB,getB,,,,\n", 1, 9,
              "a.b,Sch,Col.x-1_:,,,1,setB,getB,,,,\n"),
      lasting("not-an-xml-name", "a.b,Sch,Col,In/Out,1,1,setB,getB,,,,\n", 1, 13,
              "a.b,Sch,\xc3\xa4ra,InOut,1,1,setB,getB,,,,\n"),
      lasting("reserved-name", "a.b,Sch,ResultCols,,,1,setB,getB,,,,\n", 1, 9, "a.b,Sch,Results,,,1,setB,getB,,,,\n"),
      lasting("reserved-name", "a.b,Sch,Col,Entry,1,1,setB,getB,,,,\n", 1, 13,
              "a.b,Sch,Col,Entries,1,1,setB,getB,,,,\n"),
      lasting("schema-breaks-request", "a.b,R&D,Col,,,1,setB,getB,,,,\n", 1, 6, "a.b,R'D>,Col,,,1,setB,getB,,,,\n"),
      lasting("schema-breaks-request", "a.b,in\"ch,Col,,,1,setB,getB,,,,\n", 1, 7, "a.b,inch,Col,,,1,setB,getB,,,,\n"),
      lasting("index-value-breaks-request", "a.b,Sch,Col,Row,a<b,1,setB,getB,,,,\n", 1, 18,
              "a.b,Sch,Col,Row,a>b,1,setB,getB,,,,\nc.d,,,,a<b,1,setB,getB,,,,\n"),
      lasting("column-is-index", "a.b,Sch,Row,Row,1,1,setB,getB,,,,\n", 1, 9, "a.b,Sch,Rows,Row,1,1,setB,getB,,,,\n"),
  };
}
