// A library with one of everything whose change breaks services that are compiled already. Each macro plants one break.
#include <map>
#include <string>
#include <vector>

/// Reached through a pointer alone, as the services of the platform are.
class Service
{
public:
  virtual ~Service() = default;
#ifdef SLOT_ADDED
  virtual void added() = 0;
#endif
#ifdef SLOTS_SWAPPED
  virtual int second(const std::string& text) = 0;
  virtual void first() = 0;
#else
  virtual void first() = 0;
#ifdef PARAMETER_OF_A_SLOT
  virtual int second(std::string text) = 0;
#else
  virtual int second(const std::string& text) = 0;
#endif
#endif
};

/// Reached through a container of the standard library alone.
struct Entry
{
#ifdef FIELDS_SWAPPED_IN_AN_ENTRY
  int number;
  bool flag;
#else
  bool flag;
  int number;
#endif
  std::string text;
#ifdef FIELD_ADDED_TO_AN_ENTRY
  long added;
#endif
};

class __attribute__((visibility("default"))) Manager
{
public:
  explicit Manager(Service* used);
  virtual ~Manager();
#ifdef RESULT_OF_A_FUNCTION
  long value() const;
#else
  int value() const;
#endif
#ifndef FUNCTION_GONE
  void exported();
#endif

private:
#ifndef HIDDEN_FUNCTION_GONE
  int hidden() const __attribute__((visibility("hidden")));
#endif

  Service* service;
#ifdef FIELD_ADDED
  char added;
#endif
#ifdef FIELD_OF_ANOTHER_TYPE
  std::map<std::string, long> numbers;
#else
  std::map<std::string, int> numbers;
#endif
  std::vector<Entry> entries;
  std::map<std::string, Entry> named;
#ifdef SIZE
  char room[64];
#endif
};

Manager::Manager(Service* used) : service(used)
{
  entries.push_back({});
  named[""] = {};
}
Manager::~Manager() = default;
#ifdef RESULT_OF_A_FUNCTION
long Manager::value() const
#else
int Manager::value() const
#endif
{
  return static_cast<int>(numbers.size() + entries.size() + named.size());
}
#ifndef FUNCTION_GONE
void Manager::exported()
{
  service->first();
}
#endif
#ifndef HIDDEN_FUNCTION_GONE
int Manager::hidden() const
{
  return 1;
}
#endif
