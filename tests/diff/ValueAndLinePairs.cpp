// Columns of items that stay, lines that requests do not find, and maps that mean the same.
#include "Pair.h"

using difftest::other;

namespace
{

std::string item(const std::string& columns)
{
  return "a.b,Sch,Col,,," + columns + "\n";
}

std::string local(const std::string& columns)
{
  return "a.b,,,,," + columns + "\n";
}

} // namespace

std::vector<difftest::MapPair> difftest::valuePairs()
{
  return {
      {"default", item("1,setB,,,,,"), item("2,setB,,,,,"), "default-changed"},
      {"default_from_nothing", item(",setB,,,,,"), item("2,setB,,,,,"), "default-changed"},
      {"default_by_a_blank", item("1,setB,,,,,"), item("1 ,setB,,,,,"), "default-changed"},
      {"default_by_a_leading_zero", item("1,setB,,,,,"), item("01,setB,,,,,"), "default-changed"},
      {"default_of_a_secret", item("1,setB,,,,,true"), item("2,setB,,,,,true"), "default-changed"},
      {"default_of_a_local_item", local("1,setB,,,,,"), local("2,setB,,,,,"), "default-changed"},
      {"default_behind_a_comma_too_many", item("1,setB,,,,,,"), item("2,setB,,,,,,"), "default-changed"},
      {"alternative_from_nothing", item("1,setB,,,,,"), item("1,setB,,,,3,"), "alternative-added"},
      {"alternative", item("1,setB,,,,2,"), item("1,setB,,,,3,"), "alternative-changed"},
      {"alternative_of_a_local_item", local("1,setB,,,,,"), local("1,setB,,,,3,"), "alternative-added"},
      {"default_and_alternative_change_places", item("1,setB,,,,2,"), item("2,setB,,,,1,"),
       "alternative-changed default-changed"},
      {"encryption", item("1,setB,,,,,"), item("1,setB,,,,,true"), "encryption-switched-on"},
      {"encryption_by_case", item("1,setB,,,,,True"), item("1,setB,,,,,true"), "encryption-switched-on"},
      {"encryption_by_a_blank", item("1,setB,,,,,true "), item("1,setB,,,,,true"), "encryption-switched-on"},
      {"encryption_by_a_carriage_return", item("1,setB,,,,,true\r"), item("1,setB,,,,,true"), "encryption-switched-on"},
      {"encryption_that_slipped_a_column", item("1,setB,,,,true,"), item("1,setB,,,,,true"),
       "alternative-removed encryption-switched-on"},
      {"encryption_of_a_local_item", local("1,setB,,,,,"), local("1,setB,,,,,true"), "unused-column-changed"},
      {"encryption_of_one_of_two_in_a_cell", item("1,setB,,,,,") + "c.d,Sch,Col,,,1,setD,,,,,true\n",
       item("1,setB,,,,,true") + "c.d,Sch,Col,,,1,setD,,,,,true\n", "encryption-switched-on"},
      {"group", item("1,setB,,,,,"), item("1,setB,,,Grp,,"), "group-joined"},
      {"group_of_a_blank", item("1,setB,,,,,"), item("1,setB,,, ,,"), "group-joined"},
      {"another_group", item("1,setB,,,Grp,,"), item("1,setB,,,Group,,"), "group-changed"},
      {"group_of_a_local_item", local("1,setB,,,,,"), local("1,setB,,,Grp,,"), "unused-column-changed"},
      {"user_data", item("1,setB,,,,,"), item("1,setB,,user,,,"), "user-data-on"},
      {"user_data_by_false", item("1,setB,,,,,"), item("1,setB,,false,,,"), "user-data-on"},
      {"user_data_by_a_blank", item("1,setB,,,,,"), item("1,setB,, ,,,"), "user-data-on"},
      {"user_data_of_a_local_item", local("1,setB,,,,,"), local("1,setB,,user,,,"), "user-data-on"},
      {"setter", item("1,,,,,,") + "k.k,Sch,K,,,,setK,,,,,\n", item("1,setB,,,,,") + "k.k,Sch,K,,,,setK,,,,,\n",
       "setter-added"},
      {"setter_of_a_local_item", local("1,,getB,,,,"), local("1,setB,getB,,,,"), "setter-added"},
      {"another_setter", item("1,setB,,,,,"), item("1,setC,,,,,"), "setter-renamed"},
      {"setter_in_another_case", item("1,setB,,,,,"), item("1,setb,,,,,"), "setter-renamed"},
      {"getter", item("1,setB,,,,,"), item("1,setB,getB,,,,"), "getter-added"},
      {"another_getter", item("1,setB,getB,,,,"), item("1,setB,getC,,,,"), "getter-renamed"},
      {"setter_and_getter_change_places", item("1,setB,getB,,,,"), item("1,getB,setB,,,,"),
       "getter-renamed setter-renamed"},
      {"index_value_of_a_local_item", "a.b,,,,1,,setB,,,,,\n", "a.b,,,,2,,setB,,,,,\n", "local-index-changed"},
      {"index_column_of_a_local_item", "a.b,,,Row,1,,setB,,,,,\n", "a.b,,,Line,1,,setB,,,,,\n",
       "unused-column-changed"},
      {"column_of_a_local_item", "a.b,,Col,,,,setB,,,,,\n", "a.b,,Cal,,,,setB,,,,,\n", "unused-column-changed"},
      {"everything_at_once", item("1,setB,getB,,,,"), "a.b,Sch,Cal,,,2,setC,getC,user,Grp,3,true\n",
       "alternative-added cell-moved-column default-changed encryption-switched-on getter-renamed group-joined "
       "setter-renamed user-data-on"},
      {"two_items_each_its_own", item("1,setB,,,,,") + "c.d,Sch,D,,,1,setD,,,,,\n",
       item("2,setB,,,,,") + "c.d,Sch,D,,,1,setD,,,Grp,,\n", "default-changed group-joined"},
  };
}

std::vector<difftest::MapPair> difftest::linePairs()
{
  const std::string first = item("1,setB,,,,,");
  const std::string second = item("2,setB,,,,,");
  return {
      {"order_of_two_lines_of_a_root_id", first + second, second + first, "default-changed duplicate-winner-changed"},
      {"second_line_behind_the_first", first, first + second, "default-changed duplicate-winner-changed"},
      {"second_line_before_the_first", first, second + first, "start-line-added"},
      {"same_line_twice", first, first + first, "start-line-added"},
      {"last_of_three_lines", first + second + item("3,setB,,,,,"), first + second,
       "default-changed duplicate-winner-changed"},
      {"order_of_three_lines_of_which_the_last_stays", first + second + item("3,setB,,,,,"),
       second + first + item("3,setB,,,,,"), ""},
      {"a_line_that_does_not_count", first + second, item("9,setB,,,,,") + second,
       "start-line-added start-line-removed"},
      {"the_line_that_counts", first + second, first + item("9,setB,,,,,"), "default-changed"},
      {"winner_in_another_cell", first + "a.b,Sch,Cal,,,1,setB,,,,,\n", "a.b,Sch,Cal,,,1,setB,,,,,\n" + first,
       "cell-moved-column duplicate-winner-changed"},
      {"encryption_by_the_order_of_lines", first + item("1,setB,,,,,true"), item("1,setB,,,,,true") + first,
       "duplicate-winner-changed encryption-switched-off"},
      {"user_data_by_a_line_that_does_not_count", first + second, item("1,setB,,user,,,") + second,
       "start-line-added start-line-removed user-data-on"},
      {"line_without_root_id", other, other + ",Sound,Nameless,,,1,setB,,,,,\n", "start-line-added"},
      {"default_of_a_line_without_root_id", other + ",Sound,Nameless,,,1,setB,,,,,\n",
       other + ",Sound,Nameless,,,2,setB,,,,,\n", "start-line-added start-line-removed"},
      {"both_stores_are_no_duplicates", first + local("1,setB,,,,,"), local("1,setB,,,,,") + first, ""},
      {"rest_of_a_line_that_was_cut", std::string(480, 'x') + ",,,,,1,setB,,,,,\nq.q,Sch,Q,,,1,setQ,,,,,\n",
       std::string(480, 'x') + ",,,,,1,setB,,,,,,,,,,,,,,,,,\nq.q,Sch,Q,,,1,setQ,,,,,\n", ""},
      {"rest_that_becomes_an_item", other + "a.b,Sound,Col,,,1,setB,,,,," + std::string(471, ' ') + "\n",
       other + "a.b,Sound,Col,,,1,setB,,,,," + std::string(475, ' ') + "new.item,,,,,,setN,,,,,\n", "item-added"},
  };
}

std::vector<difftest::MapPair> difftest::silentPairs()
{
  const std::string one = item("1,setB,getB,user,Grp,2,");
  return {
      {"the_same_map", one + other, one + other, ""},
      {"two_empty_maps", "", "", ""},
      {"order", one + other, other + one, ""},
      {"line_end_at_the_end_of_the_file", one, one.substr(0, one.size() - 1), ""},
      {"empty_lines", one + other, "\n" + one + "\n\n" + other + "\n", ""},
      {"blank_lines", one, "    \n" + one, ""},
      {"carriage_returns_where_nothing_is_encrypted", one, one.substr(0, one.size() - 1) + "\r\n", ""},
      {"carriage_return_behind_the_twelfth_comma", item("1,setB,,,,,true,"), item("1,setB,,,,,true,\r"), ""},
      {"text_behind_the_twelfth_comma", one, item("1,setB,getB,user,Grp,2,,a remark, and more"), ""},
      {"comma_too_many", item("1,setB,,,,,true"), item("1,setB,,,,,true,"), ""},
      {"encryption_denied_in_other_words", item("1,setB,,,,,"), item("1,setB,,,,,false"), ""},
      {"encryption_that_is_none", item("1,setB,,,,,TRUE"), item("1,setB,,,,,yes"), ""},
      {"user_data_in_other_words", one, item("1,setB,getB,yes,Grp,2,"), ""},
      {"remark_that_is_too_short", one, "# remark\n" + one, ""},
      {"remark_without_commas", one, "# a longer remark without any comma\n" + one, ""},
      {"bytes_behind_a_nul", one, one.substr(0, one.size() - 1) + std::string("\0x,y", 4) + "\n", ""},
      {"order_of_rows", "a-1,Sch,Col,Row,1,1,setA,,,,,\na-2,Sch,Col,Row,2,1,setA,,,,,\n",
       "a-2,Sch,Col,Row,2,1,setA,,,,,\na-1,Sch,Col,Row,1,1,setA,,,,,\n", ""},
      {"same_line_twice_elsewhere", one + one + other, one + other + one, ""},
  };
}
