// Files and lines that the library reads otherwise than their author meant.
#include "RuleCase.h"

using checktest::lasting;
using checktest::mendable;
using checktest::soundItem;

namespace
{

using namespace std::string_literals;

/// An item whose line has so many bytes.
std::string itemOf(std::size_t bytes)
{
  const std::string head = "long.item,Sound,Long,,,";
  const std::string tail = ",setLong,getLong,,,,";
  return head + std::string(bytes - head.size() - tail.size(), 'x') + tail + "\n";
}

} // namespace

std::vector<checktest::RuleCase> checktest::fileCases()
{
  return {
      lasting("utf-16", "\xff\xfe"s + "a\0,\0\n\0"s, 1, 1, soundItem),
      lasting("utf-16", "\xfe\xff"s + "\0a\0,\0\n"s, 1, 1, soundItem),
      mendable("byte-order-mark", "\xef\xbb\xbf" + soundItem, 1, 1, soundItem),
      lasting("no-items", "", 1, 1, soundItem),
      lasting("no-items", "\n\n", 1, 1, "\n\n" + soundItem),
      mendable("crlf-line-ends", "a.b,Sch,Col,,,1,setB,getB,,,,\r\nc.d,Sch,Other,,,1,setD,getD,,,,\r\n\r\n", 1, 30,
               "a.b,Sch,Col,,,1,setB,getB,,,,\nc.d,Sch,Other,,,1,setD,getD,,,,\n\n"),
  };
}

std::vector<checktest::RuleCase> checktest::lineCases()
{
  return {
      lasting("line-too-long", itemOf(501) + soundItem, 1, 501, itemOf(500) + soundItem),
      lasting("line-too-long", soundItem + itemOf(700) + soundItem.substr(0, 3) + "2,Sound,V2,,,1,s,g,,,,\n", 2, 501,
              soundItem + itemOf(499)),
      lasting("nul-byte", soundItem + "a.b,Sch,Col,,,1,setB,get"s + "\0B,,,,\n"s, 2, 25, soundItem),
      lasting("line-passed-over", soundItem + "a.b,S,C,,\n", 2, 1, soundItem + "   \r\n\n"s.substr(5)),
      lasting("line-passed-over", soundItem + "a", 2, 1, soundItem + "\n"),
      lasting("too-few-columns", soundItem + "a.b,Sch,Col,,,1,setB,getB,,,\n", 2, 1,
              soundItem + "a.b,Sch,Col,,,1,setB,getB,,,,\n"),
      lasting("too-few-columns", "a.b;Sch;Col;;;1;setB;getB;;;;\n" + soundItem, 1, 1, soundItem),
      lasting("too-many-columns", "a.b,Sch,Col,,,1,setB,getB,,,,,true\n", 1, 30, "a.b,Sch,Pin,,,1,setB,getB,,,,\n"),
      mendable("trailing-commas", "a.b,Sch,Col,,,1,setB,getB,,,,, ,\n" + soundItem, 1, 30,
               "a.b,Sch,Col,,,1,setB,getB,,,,\n" + soundItem),
      lasting("comment-line", "# the volume\n" + soundItem, 1, 1, soundItem),
      lasting("comment-line", soundItem + "  // x\n", 2, 1, soundItem),
      lasting("commented-out-item", soundItem + "#a.b,Sch,Col,,,1,setB,getB,,,,\n", 2, 1,
              soundItem + "a#b,Sch,Col,,,1,setB,getB,,,,\n"),
      mendable("header-line", "rootId,dasSchema,dasItem,,,1,setter,getter,,,,\n" + soundItem, 1, 1, soundItem),
      lasting("quoted-field", "a.b,Sch,Col,,,\"1\",setB,getB,,,,\n", 1, 15, "a.b,Sch,Col,,,1\"5\",setB,getB,,,,\n"),
      lasting("quoted-field", "a.b,Sch,Col,,,1,\"setB\",getB,,,,\n", 1, 17, soundItem),
  };
}
