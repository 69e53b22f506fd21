// The frame of every interface operation that runs callbacks.
#pragma once

#include "Hold.h"

/// Holds the lock and keeps operations apart.
///
/// A callback may call the manager again on the same thread. Such an inner operation starts with no flagged
/// groups and no pending security-log records, and with a parser state of its own while a parse is running;
/// when it ends the outer operation finds its own as they were, together with what the inner one left behind.
/// Items, indexes and callbacks that an inner operation gets rid of stay alive until the outermost one ends.
///
/// When an exception leaves the operation, it drops what it gathered itself: the validator is told to forget the groups
/// that it flagged and those of all values that it was about to try, and security-log records of requests that it never
/// sent are dropped. What earlier operations, or inner ones, left behind stays.
class SDM_SCOPED_HOLD [[nodiscard]] ServiceDataManager::Operation
{
public:
  explicit Operation(ServiceDataManager& owner) SDM_TAKES(owner);
  ~Operation() SDM_GIVES_BACK();
  Operation(const Operation&) = delete;
  Operation& operator=(const Operation&) = delete;

  /// Drops the records of earlier operations that could not be handed over.
  void dropPendingRecords();

  /// The operation has judged all flagged groups: none of those it found is left to later ones, however it ends.
  void groupsAreJudged();

private:
  void dropGatheredState() SDM_NEEDS(manager);
  std::map<std::string, bool> takeOwnGroups() SDM_NEEDS(manager);
  void forgetGroup(const std::string& group) SDM_NEEDS(manager);
  void restoreOuterState() SDM_NEEDS(manager);
  void freeRetired() SDM_NEEDS(manager);

  Hold hold;
  ServiceDataManager& manager;
  const int exceptionsBefore;
  const bool inner;
  sdm::DASReplyState innerReply;
  sdm::DASReplyState* outerReply;
  /// The groups that were flagged before, the outer operation's included: an exception leaves them flagged.
  std::vector<std::string> groupsToKeep;
  std::map<std::string, bool> outerGroups;
  std::vector<std::string> outerRecords;
  std::size_t outerRecordsToKeep;
};

/// Values that an operation tries and whose groups it flags only later on: when an exception comes before that, a log's
/// included, the validator may hold some of the values, so their groups count as flagged.
class ServiceDataManager::TriedValues
{
public:
  /// Borrow what they get. Made within an `Operation`.
  TriedValues(ServiceDataManager& owner, const std::vector<SetDataBlob>& triedBlobs);
  TriedValues(ServiceDataManager& owner, const ManagedDataItem& triedItem);
  ~TriedValues();
  TriedValues(const TriedValues&) = delete;
  TriedValues& operator=(const TriedValues&) = delete;

private:
  void flagGroupOf(const ManagedDataItem* tried) SDM_NEEDS(manager);

  ServiceDataManager& manager;
  const std::vector<SetDataBlob>* blobs = nullptr;
  const ManagedDataItem* item = nullptr;
  const int exceptionsBefore;
};
