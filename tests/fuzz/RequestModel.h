// What the database should answer and hold, put down plainly: for comparison.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace fuzz
{

struct ModelTable
{
  std::string schema;
  /// Empty for a schema of one row.
  std::string indexColumn;
  /// Without the index column, in the order of replies.
  std::vector<std::string> columns;
  /// In the order in which they were made; a row's name, then its written cells.
  std::vector<std::pair<std::string, std::map<std::string, std::string>>> rows;
};

/// The tables, and the judgement of requests to them.
class RequestModel
{
public:
  explicit RequestModel(std::vector<ModelTable> tables);

  /// Carries a request out and returns the reply's content: one line an element. A refusal is "error_response" alone.
  /// The request has to be within reach of the judge.
  std::string answer(const std::string& request);

  /// Whether a request can be judged: other encodings and declared document types can not.
  static bool canJudge(const std::string& request);

  /// What a whole-schema read of the table should show.
  static std::string wholeTable(const ModelTable& table);

  /// A reply in the words of `answer`. Ends the program for one that is no reply at all.
  static std::string described(const std::string& reply);

  std::vector<ModelTable> tables;
};

} // namespace fuzz
