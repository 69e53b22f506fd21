// Threads that ask one manager for everything it can do, in any order, and check each answer.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

#include "World.h"

namespace threads
{

class Worker;

struct Kind
{
  const char* name;
  /// How often, among the sum of all.
  unsigned weight;
  void (Worker::*run)();
};

constexpr std::size_t kindCount = 18;
const std::array<Kind, kindCount>& kinds();

/// What threads did and met.
struct Tally
{
  std::array<std::size_t, kindCount> operations{};
  /// Operations that a service or callback ended by throwing.
  std::size_t thrown = 0;
  std::size_t itemsSet = 0;
  std::size_t itemsUnknown = 0;
  std::size_t reasons = 0;
  std::size_t valuesRead = 0;

  void add(const Tally& other);
  std::size_t total() const;
};

/// One thread's share.
class Worker
{
public:
  Worker(World& itsWorld, int itsNumber, std::uint64_t seed);

  /// `withReady`: the one operation that must not be the first to look for the local store beside others.
  void work(std::size_t operations, bool withReady);

  Tally tally;

  void set();
  void setGroup();
  void setPair();
  void renew();
  void get();
  void getPair();
  void change();
  void initialise();
  void initialiseKeeping();
  void setStartup();
  void look();
  void clear();
  void resetUserData();
  void reloadUserData();
  void import();
  void addCallbacks();
  void ready();
  void turnWeather();

private:
  bool chance(unsigned percent);
  std::size_t below(std::size_t count);
  std::string newValue(const std::string& verb);
  std::string anyRootId();
  bool send(ManageableData& data);
  void checkAnswer(ManageableData& data, bool success, bool thrown);
  void checkItem(const std::string& rootId, const std::string& value,
                 const std::multimap<std::string, std::string>& told);

  World& world;
  ServiceDataManagerIfc& manager;
  const int number;
  std::mt19937_64 random;
  std::size_t requests = 0;
};

} // namespace threads
