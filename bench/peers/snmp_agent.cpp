// Net-SNMP's agent library with as many scalars as asked, each with a callback, read and set in the same process.
//
// Fairness: the requests are real ones, encoded and sent over the loopback to the agent in this very process, as an
// agent is meant to be asked. Nothing is durable, nothing is validated but the type, and nobody is refused.
//
// usage: peer_snmp_agent ITEMS
#include <net-snmp/net-snmp-config.h>

#include <net-snmp/net-snmp-includes.h>

#include <net-snmp/agent/net-snmp-agent-includes.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

namespace
{

char held[16] = "5061";
bool answered = false;
long failures = 0;

int handle(netsnmp_mib_handler*, netsnmp_handler_registration*, netsnmp_agent_request_info* info,
           netsnmp_request_info* requests)
{
  if (info->mode == MODE_GET)
    snmp_set_var_typed_value(requests->requestvb, ASN_OCTET_STR, held, std::strlen(held));
  else if (info->mode == MODE_SET_COMMIT)
    std::snprintf(held, sizeof held, "%.*s", static_cast<int>(requests->requestvb->val_len),
                  reinterpret_cast<const char*>(requests->requestvb->val.string));
  return SNMP_ERR_NOERROR;
}

int noteAnswer(int operation, netsnmp_session*, int, netsnmp_pdu* reply, void*)
{
  answered = true;
  if (operation != NETSNMP_CALLBACK_OP_RECEIVED_MESSAGE || reply->errstat != SNMP_ERR_NOERROR ||
      reply->variables->type != ASN_OCTET_STR)
    ++failures;
  return 1;
}

/// An experimental arc that nobody has.
struct Name
{
  explicit Name(long item)
  {
    id[9] = static_cast<oid>(item);
  }
  oid id[11] = {1, 3, 6, 1, 4, 1, 99999, 1, 1, 0, 0};
};

void registerItems(long items)
{
  for (long item = 1; item <= items; ++item)
  {
    const Name name(item);
    netsnmp_register_scalar(
        netsnmp_create_handler_registration("item", handle, name.id, OID_LENGTH(name.id) - 1, HANDLER_CAN_RWRITE));
  }
}

void ask(netsnmp_session* session, int command, long item)
{
  netsnmp_pdu* pdu = snmp_pdu_create(command);
  const Name name(item);
  if (command == SNMP_MSG_SET)
    snmp_pdu_add_variable(pdu, name.id, OID_LENGTH(name.id), ASN_OCTET_STR, "5062", 4);
  else
    snmp_add_null_var(pdu, name.id, OID_LENGTH(name.id));
  answered = false;
  if (snmp_send(session, pdu) == 0)
  {
    ++failures;
    return;
  }
  while (!answered)
    agent_check_and_process(1);
}

double microsecondsSince(std::chrono::steady_clock::time_point begin)
{
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - begin).count();
}

} // namespace

int main(int argc, char** argv)
{
  const long items = argc > 1 ? std::atol(argv[1]) : 1000;
  const char* const address = "udp:127.0.0.1:16161";
  setenv("MIBS", "", 1);
  netsnmp_ds_set_string(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_OPTIONALCONFIG, "/dev/null");
  netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DONT_READ_CONFIGS, 1);
  netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DONT_PERSIST_STATE, 1);
  netsnmp_ds_set_string(NETSNMP_DS_APPLICATION_ID, NETSNMP_DS_AGENT_PORTS, address);
  const auto start = std::chrono::steady_clock::now();
  if (init_agent("bench") != 0)
    return 1;
  char access[] = "rwcommunity private";
  netsnmp_config(access);
  registerItems(items);
  init_snmp("bench");
  if (init_master_agent() != 0)
    return 1;
  snmp_disable_log();
  const double startTook = microsecondsSince(start);

  netsnmp_session wanted;
  snmp_sess_init(&wanted);
  wanted.version = SNMP_VERSION_2c;
  char peer[] = "udp:127.0.0.1:16161";
  char community[] = "private";
  wanted.peername = peer;
  wanted.community = reinterpret_cast<unsigned char*>(community);
  wanted.community_len = std::strlen(community);
  wanted.callback = noteAnswer;
  netsnmp_session* session = snmp_open(&wanted);
  if (session == nullptr)
    return 1;
  double best[2] = {1e12, 1e12};
  for (int repetition = 0; repetition < 5; ++repetition)
  {
    for (const int command : {SNMP_MSG_GET, SNMP_MSG_SET})
    {
      const auto begin = std::chrono::steady_clock::now();
      for (long i = 0; i < 200; ++i)
        ask(session, command, i * 7919 % items + 1);
      double& least = best[command == SNMP_MSG_SET];
      const double took = microsecondsSince(begin) / 200;
      least = took < least ? took : least;
    }
  }
  std::printf("{\"peer\": \"snmp-agent\", \"items\": %ld, \"start_us\": %.0f, \"get_us\": %.2f, \"set_us\": %.2f, "
              "\"failures\": %ld}\n",
              items, startTook, best[0], best[1], failures);
  return failures == 0 ? 0 : 1;
}
