// Values to feed in place of secrets that nobody knows any more.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "transcript/Transcript.h"

namespace cli::replay
{

/// A transcript does not tell how long a secret was, or of which characters, and a service may judge by that. So there
/// are several stand-ins for each secret: those that the service's recorded answer makes likely come first, and `next`
/// goes on to another one when it judged otherwise.
class StandIns
{
public:
  explicit StandIns(const transcript::Transcript& transcript);

  /// For the secret with this name. Different secrets have different ones.
  std::string of(const std::string& name) const;

  /// Takes another one for a secret that has a part in this event, or in the command before it. False when there is no
  /// such secret, or no other stand-in for it.
  bool next(std::size_t event);

private:
  struct Secret
  {
    /// The number of the event of the command that brought it.
    std::size_t command = 0;
    /// Likely to be digits alone.
    bool digits = false;
    bool accepted = true;
    std::size_t choice = 0;
  };

  void noteCommand(const std::vector<std::string>& words, std::size_t event);
  void noteVerdict(const transcript::Event& event);
  std::string chosen(const std::string& name, const Secret& secret) const;

  const transcript::Transcript& transcript;
  std::map<std::string, Secret> secrets;
  /// In the order in which commands brought them.
  std::vector<std::string> order;
  std::map<std::string, bool> judged;
};

} // namespace cli::replay
