// The services and callbacks of a life: the recording ones, answering as the life says, each call counted so that
// something can happen at any of them.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "Life.h"
#include "Services.h"

namespace judge
{

/// What callbacks and services throw.
struct Thrown : std::runtime_error
{
  Thrown() : std::runtime_error("thrown on purpose")
  {
  }
};

class Surroundings
{
public:
  explicit Surroundings(const Life& life);
  ~Surroundings();
  Surroundings(const Surroundings&) = delete;
  Surroundings& operator=(const Surroundings&) = delete;

  recording::Setter* newSetter(const std::string& name);
  recording::Getter* newGetter(const std::string& name);
  void writeMap(const MapLine* extra = nullptr);
  void removeMap();
  /// One of the four by number: there, gone, or of another interface.
  void place(unsigned service, Executable* object);
  Executable* own(unsigned service);

  const Life& life;
  recording::Context context;
  recording::Das das;
  recording::Interfaces interfaces;
  recording::Store store;
  recording::SecurityLog securityLog;
  recording::Validator validator;
  recording::Agent agent;

  /// The owning service's values, by callback name and index.
  std::map<std::pair<std::string, std::string>, std::string> live;
  std::size_t setterCalls = 0;
  std::size_t getterCalls = 0;
  std::size_t requests = 0;
  std::set<ManagedItemSetter*> setters;
  std::set<ManagedItemGetter*> getters;
  /// Runs at every call of a service or callback.
  recording::Hook called;

private:
  void fillDictionary();
};

/// The reply that the life's script gives to this request.
std::string replyTo(const std::string& request, const Reply& script, const std::vector<MapLine>& map);

} // namespace judge
