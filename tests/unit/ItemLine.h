// A line of an item map, put together by name.
#pragma once

#include <string>

namespace unit
{

struct ItemLine
{
  explicit ItemLine(std::string id) : rootId(std::move(id))
  {
  }

  /// Where the database holds the value.
  ItemLine& das(const std::string& schema, const std::string& column)
  {
    dasSchema = schema;
    dasItem = column;
    return *this;
  }
  ItemLine& index(const std::string& name, const std::string& value)
  {
    dasIndexName = name;
    dasIndexValue = value;
    return *this;
  }
  ItemLine& standard(const std::string& value)
  {
    defaultValue = value;
    return *this;
  }
  ItemLine& set(const std::string& name)
  {
    setter = name;
    return *this;
  }
  ItemLine& get(const std::string& name)
  {
    getter = name;
    return *this;
  }
  /// Setter and getter of the same name.
  ItemLine& both(const std::string& name)
  {
    return set(name).get(name);
  }
  ItemLine& user(const std::string& mark = "1")
  {
    userData = mark;
    return *this;
  }
  ItemLine& group(const std::string& name)
  {
    isGroupItem = name;
    return *this;
  }
  ItemLine& alternative(const std::string& value)
  {
    alternativeDefault = value;
    return *this;
  }
  ItemLine& encrypted(const std::string& flag = "true")
  {
    dasEncrypted = flag;
    return *this;
  }

  std::string text() const
  {
    return rootId + "," + dasSchema + "," + dasItem + "," + dasIndexName + "," + dasIndexValue + "," + defaultValue +
           "," + setter + "," + getter + "," + userData + "," + isGroupItem + "," + alternativeDefault + "," +
           dasEncrypted;
  }

  std::string rootId, dasSchema, dasItem, dasIndexName, dasIndexValue, defaultValue, setter, getter, userData,
      isGroupItem, alternativeDefault, dasEncrypted;
};

} // namespace unit
