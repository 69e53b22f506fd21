// A life of a manager as data: its item map, what its surroundings answer, and what is done to it step by step.
#pragma once

#include <array>
#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

namespace judge
{

/// How a line of the item map file is written. A dictionary holds whole entries only, save for `tooShort`: there the
/// first key that is missing ends it.
enum class LineShape
{
  whole,
  tooFewColumns,
  tooManyColumns,
  tooShort,
  overlong,
  carriageReturn,
  nulByte,
};

struct MapLine
{
  /// rootId, dasSchema, dasItem, dasIndexName, dasIndexValue, default, setter, getter, userData, group, alternative
  /// default, dasEncrypted.
  std::array<std::string, 12> columns;
  LineShape shape = LineShape::whole;

  std::string text() const;
};

/// What the database does to a reply that would be a good one.
enum class Damage
{
  none,
  empty,
  truncated,
  notXml,
  secondRoot,
  endsWithColumn,
  columnEverywhere,
};

/// A reply of the database, made for whatever schema the request asks for.
struct Reply
{
  /// Text of ReasonForMessage; "@" stands for what fits the request, "-" for no such element.
  std::string kind = "@";
  /// Name of the schema; "@" stands for that of the request, "-" for no such attribute.
  std::string schema = "@";
  /// Which of the schema's items are in it: bit by bit, in map order.
  unsigned items = ~0U;
  /// Contents of the cells as they stand in XML, one after the other; "!" in front stands for the encrypted text.
  std::vector<std::string> cells;
  bool indexLast = false;
  bool kindLast = false;
  /// Elements around and between: "Context", "nested", "extra" or none.
  std::string extra;
  Damage damage = Damage::none;
  unsigned cutAt = 0;
};

/// How a setter answers: "" accepts in silence.
struct Answer
{
  bool accepts = true;
  std::string remark;
};

enum class Do
{
  // Operations of the manager.
  setup,
  initialise,
  initialiseSparing,
  ready,
  setData,
  getData,
  dataChanged,
  addSetter,
  addGetter,
  getItem,
  getPublishedItem,
  setStartup,
  clear,
  setDefaultUserData,
  importItem,
  deleteGetters,
  deleteSetters,
  reloadUserData,
  isItemManaged,
  // What happens around it.
  serviceComes,
  serviceGoes,
  serviceIsAnother,
  storeRefuses,
  storeAccepts,
  storeObjects,
  storeHolds,
  groupFails,
  groupPasses,
  liveValue,
  interfaceCount,
  gate,
  encryption,
  mapFile,
  noMapFile,
};

struct Incident;

struct Step
{
  Do what = Do::ready;
  std::string text;
  std::string second;
  unsigned number = 0;
  std::vector<std::pair<std::string, std::string>> values;
  /// What callbacks and services do while the step runs, beside answering.
  std::vector<Incident> incidents;
};

/// At the n-th call of a callback or service in a step, counted from 1: throws, or does something to the manager first.
struct Incident
{
  unsigned atCall = 1;
  /// Empty: throws.
  std::vector<Step> inner;
  /// The callback lets out what the inner steps threw.
  bool letsOut = true;
};

struct Life
{
  std::vector<MapLine> map;
  bool fromFile = true;
  bool lastLineEnds = true;
  std::vector<Reply> replies;
  std::vector<Answer> answers;
  /// What getters answer now and then; "@" stands for the value that was set last.
  std::vector<std::string> getterValues;
  std::vector<std::string> groupReasons;
  unsigned gate = 6;
  /// What is not there at first: the services bit by bit, and the validator.
  unsigned absent = 0;
  std::vector<Step> steps;

  std::string mapText() const;
};

std::string nameOf(Do what);

/// For rapidcheck and readers: map lines, surroundings, steps.
void showValue(const Life& life, std::ostream& out);

} // namespace judge
