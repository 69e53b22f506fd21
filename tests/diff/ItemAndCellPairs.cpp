// Items that come and go, and the cells and schemas of those that stay.
#include "Pair.h"

using difftest::other;

std::vector<difftest::MapPair> difftest::itemPairs()
{
  const std::string item = "a.b,Sch,Col,,,1,setB,getB,,,,\n";
  const std::string local = "a.b,,,,,1,setB,getB,,,,\n";
  return {
      {"item_in_a_schema_that_is_asked_already", other, other + "a.b,Sound,Other,,,1,setB,getB,,,,\n", "item-added"},
      {"item_in_a_schema_of_its_own", other, other + item, "item-added schema-newly-asked"},
      {"item_of_the_local_store", other, other + local, "item-added"},
      {"item_without_setter_asks_for_nothing", other, other + "a.b,Sch,Col,,,1,,getB,,,,\n", "item-added"},
      {"item_without_column", other, other + "a.b,Sch,,,,1,setB,getB,,,,\n", "item-added schema-newly-asked"},
      {"first_item_of_an_empty_map", "", other, "item-added schema-newly-asked"},
      {"two_items", other, other + "a.b,,,,,,setB,,,,,\na.c,,,,,,setC,,,,,\n", "item-added item-added"},
      {"line_that_lost_a_comma_is_no_item", other + local, other + "a.b,,,,,1,setB,getB,,,\n", "item-removed"},
      {"line_of_nine_bytes_is_no_item", other + ",,,,,,,,,,,,\n", other + ",,,,,,,,,\n", "start-line-removed"},
      {"root_id_in_the_same_cell", item, "a.c,Sch,Col,,,1,setB,getB,,,,\n", "root-id-renamed"},
      {"root_id_in_another_case", item, "A.b,Sch,Col,,,1,setB,getB,,,,\n", "root-id-renamed"},
      {"root_id_with_a_blank", item, " a.b,Sch,Col,,,1,setB,getB,,,,\n", "root-id-renamed"},
      {"root_id_in_the_same_row", "a-1,Sch,Col,Row,1,1,setB,getB,,,,\n", "b-1,Sch,Col,Row,1,1,setB,getB,,,,\n",
       "root-id-renamed"},
      {"root_id_and_default_at_once", item, "a.c,Sch,Col,,,2,setB,getB,,,,\n", "default-changed root-id-renamed"},
      {"root_id_and_cell_at_once", item, "a.c,Sch,Col2,,,1,setB,getB,,,,\n", "item-added item-removed"},
      {"root_id_of_an_item_without_column", "a.b,Sch,,,,1,setB,getB,,,,\n", "a.c,Sch,,,,1,setB,getB,,,,\n",
       "item-added item-removed"},
      {"root_id_of_the_local_store", local, "a.c,,,,,1,setB,getB,,,,\n", "item-added item-removed"},
      {"two_root_ids_in_their_cells", item + "c.d,Sch,Two,,,1,setD,,,,,\n",
       "x.d,Sch,Two,,,1,setD,,,,,\nx.b,Sch,Col,,,1,setB,getB,,,,\n", "root-id-renamed root-id-renamed"},
      {"from_the_database_to_the_local_store", other + item, other + local,
       "moved-to-local-store schema-no-longer-asked"},
      {"from_one_store_to_both", other + local, other + local + "a.b,Sound,Col,,,1,setB,getB,,,,\n", "item-added"},
      {"from_both_stores_to_the_database", other + local + "a.b,Sound,Col,,,1,setB,getB,,,,\n",
       other + "a.b,Sound,Col,,,1,setB,getB,,,,\n", "item-removed"},
      {"with_a_default_to_the_local_store", other + "a.b,Sound,Col,,,1,setB,getB,,,,\n",
       other + "a.b,,,,,2,setB,getB,,,,\n", "default-changed moved-to-local-store"},
      {"out_of_a_group_to_the_local_store", other + "a.b,Sound,Col,,,1,setB,getB,,Grp,,\n", other + local,
       "group-left moved-to-local-store"},
  };
}

std::vector<difftest::MapPair> difftest::cellPairs()
{
  const std::string a = "a.a,Sch,One,,,1,setA,,,,,\n";
  const std::string b = "b.b,Sch,Two,,,1,setB,,,,,\n";
  const std::string row = "a-1,Sch,Col,Row,1,1,setA,,,,,\n";
  return {
      {"another_schema", a, "a.a,Scheme,One,,,1,setA,,,,,\n",
       "cell-moved-schema schema-newly-asked schema-no-longer-asked"},
      {"another_schema_of_one_that_stays", a + b, a + "b.b,Scheme,Two,,,1,setB,,,,,\n",
       "cell-moved-schema schema-newly-asked"},
      {"schema_in_another_case", other + "a.b,Sound,X,,,,setA,,,,,\nq.q,sound,Q,,,,setQ,,,,,\n",
       other + "a.b,sound,X,,,,setA,,,,,\nq.q,sound,Q,,,,setQ,,,,,\n", "cell-moved-schema"},
      {"another_column", a, "a.a,Sch,Uno,,,1,setA,,,,,\n", "cell-moved-column"},
      {"column_in_another_case", a, "a.a,Sch,one,,,1,setA,,,,,\n", "cell-moved-column"},
      {"no_column_any_more", a, "a.a,Sch,,,,1,setA,,,,,\n", "cell-moved-column"},
      {"another_row", row, "a-1,Sch,Col,Row,2,1,setA,,,,,\n", "cell-moved-index-value"},
      {"row_with_a_leading_zero", row, "a-1,Sch,Col,Row,01,1,setA,,,,,\n", "cell-moved-index-value"},
      {"another_schema_and_column", a + b, a + "b.b,Scheme,Dos,,,1,setB,,,,,\n",
       "cell-moved-column cell-moved-schema schema-newly-asked"},
      {"another_index_column_of_an_item_that_does_not_decide", row + "a-2,Sch,Col,Row,2,1,setA,,,,,\n",
       "a-1,Sch,Col,Line,1,1,setA,,,,,\na-2,Sch,Col,Row,2,1,setA,,,,,\n", "cell-moved-index-name"},
      {"another_index_column_of_an_item_without_setter", "a-1,Sch,Col,Row,1,1,,getA,,,,\n",
       "a-1,Sch,Col,Line,1,1,,getA,,,,\n", "cell-moved-index-name"},
      {"another_index_column_of_the_item_that_decides", row + "a-2,Sch,Col,Row,2,1,setA,,,,,\n",
       row + "a-2,Sch,Col,Line,2,1,setA,,,,,\n", "schema-index-changed"},
      {"another_index_column_of_all_items", row + "a-2,Sch,Col,Row,2,1,setA,,,,,\n",
       "a-1,Sch,Col,Line,1,1,setA,,,,,\na-2,Sch,Col,Line,2,1,setA,,,,,\n", "schema-index-changed"},
      {"index_column_by_the_order_of_the_lines", "a-1,Sch,Col,Row,1,1,setA,,,,,\na-2,Sch,Col,Line,2,1,setA,,,,,\n",
       "a-2,Sch,Col,Line,2,1,setA,,,,,\na-1,Sch,Col,Row,1,1,setA,,,,,\n", "schema-index-changed"},
      {"rows_where_there_were_none", "a-1,Sch,Col,,,1,setA,,,,,\n", row, "cell-moved-index-value schema-index-changed"},
      {"one_takes_the_cell_of_one_that_is_gone", a + b, "b.b,Sch,One,,,1,setB,,,,,\n",
       "cell-moved-column cell-reader-changed item-removed"},
      {"two_change_places", a + b, "a.a,Sch,Two,,,1,setA,,,,,\nb.b,Sch,One,,,1,setB,,,,,\n",
       "cell-moved-column cell-moved-column cell-reader-changed cell-reader-changed"},
      {"a_new_one_takes_the_cell_of_one_that_moved", a, "a.a,Sch,Uno,,,1,setA,,,,,\nn.n,Sch,One,,,1,setN,,,,,\n",
       "cell-moved-column cell-reader-changed item-added"},
      {"a_second_one_in_a_cell_behind_the_first", a, a + "n.n,Sch,One,,,1,setN,,,,,\n",
       "cell-reader-changed item-added"},
      {"a_second_one_in_a_cell_before_the_first", a, "n.n,Sch,One,,,1,setN,,,,,\n" + a, "item-added"},
      {"two_in_one_cell_in_another_order", a + "n.n,Sch,One,,,1,setN,,,,,\n", "n.n,Sch,One,,,1,setN,,,,,\n" + a,
       "cell-reader-changed"},
      {"a_second_one_in_a_cell_without_setter", a, a + "n.n,Sch,One,,,1,,getN,,,,\n", "item-added"},
      {"the_setter_of_one_of_two_in_a_cell", a + "n.n,Sch,One,,,1,,getN,,,,\n", a + "n.n,Sch,One,,,1,setN,getN,,,,\n",
       "cell-reader-changed setter-added"},
      {"the_only_setter_of_a_cell", a + "n.n,Sch,One,,,1,,getN,,,,\n",
       "a.a,Sch,One,,,1,,,,,,\nn.n,Sch,One,,,1,,getN,,,,\n", "schema-no-longer-asked setter-removed"},
      {"one_without_setter_takes_a_cell", a + "n.n,Sch,Two,,,1,,getN,,,,\nk.k,Sch,K,,,1,setK,,,,,\n",
       "n.n,Sch,One,,,1,,getN,,,,\nk.k,Sch,K,,,1,setK,,,,,\n", "cell-moved-column cell-reader-changed item-removed"},
      {"two_root_ids_in_one_cell_become_one_new", a + "n.n,Sch,One,,,1,setN,,,,,\n", "x.x,Sch,One,,,1,setN,,,,,\n",
       "item-removed root-id-renamed"},
      {"a_chain_of_three", a + b + "c.c,Sch,Tri,,,1,setC,,,,,\n",
       "a.a,Sch,Two,,,1,setA,,,,,\nb.b,Sch,Tri,,,1,setB,,,,,\nc.c,Sch,For,,,1,setC,,,,,\n",
       "cell-moved-column cell-moved-column cell-moved-column cell-reader-changed cell-reader-changed"},
      {"rows_change_places", "a-1,Sch,Col,Row,1,1,setA,,,,,\na-2,Sch,Col,Row,2,1,setA,,,,,\n",
       "a-1,Sch,Col,Row,2,1,setA,,,,,\na-2,Sch,Col,Row,1,1,setA,,,,,\n",
       "cell-moved-index-value cell-moved-index-value cell-reader-changed cell-reader-changed"},
      {"last_setter_of_a_schema", other + a, other + "a.a,Sch,One,,,1,,,,,,\n",
       "schema-no-longer-asked setter-removed"},
      {"one_setter_of_two_of_a_schema", a + b, a + "b.b,Sch,Two,,,1,,,,,,\n", "setter-removed"},
  };
}
