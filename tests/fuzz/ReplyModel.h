// What the manager should make of the database's replies, put down plainly: for comparison.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "XmlEvents.h"

namespace fuzz
{

/// An item of the fuzzed manager. Its callbacks, where it has them, bear its root id.
struct ModelItem
{
  std::string rootId;
  std::string schema;
  std::string column;
  std::string row;
  std::string defaultValue;
  bool setter = false;
  bool getter = false;
  bool encrypted = false;
};

/// The manager's reader of replies, as far as one can see from outside. What a reply leaves behind lasts.
class ReplyModel
{
public:
  /// `indexColumns` names the index column of those schemas that have one. Every getter answers `liveValue`.
  ReplyModel(std::vector<ModelItem> items, std::map<std::string, std::string> indexColumns, std::string liveValue);

  enum class Mode
  {
    firstStart,
    laterStart,
    collect
  };

  /// Whether the reply is to be accepted. What the manager does meanwhile is added to `trace`.
  bool read(const std::string& reply, Mode mode);

  /// The value of `item` out of the reply read last, in collect mode.
  std::string value(const ModelItem& item);

  /// The texts of the last reply's columns, joined by commas, in collect mode.
  std::string collected;

  /// Calls of callbacks and of the encryption, and error lines, as the recording platform notes them.
  std::vector<std::string> trace;

private:
  void start(const XmlEvent& event);
  void end(const std::string& name, Mode mode);
  void import(const ModelItem& item, Mode mode);

  const std::vector<ModelItem> items;
  const std::map<std::string, std::string> indexColumns;
  const std::string liveValue;
  std::string schema;
  std::string row;
  std::string kind;
  std::string buffer;
  bool columnSeen = false;
};

} // namespace fuzz
