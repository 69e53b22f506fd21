"""Setting values: taken, refused, unchanged, in groups; and values of the device itself."""
import os
import subprocess
import unittest

from program import SDM, ProgramTest, Run


class Setting(ProgramTest):
    def test_sets_several_values_in_one_request(self):
        run = self.run_script('set display.banner "Front desk" time.zone Europe/Berlin', "list time.zone", "traffic 4")
        self.assertEqual(run.code, 0)
        self.assertEqual(run.after("display.banner = "), '"Front desk"')
        self.assertIn("<Banner>Front desk</Banner>", run.out)
        self.assertEqual(self.get("time.zone"), "Europe/Berlin")

    def test_tells_where_a_value_came_from(self):
        def origin(*commands):
            return self.run_script(*commands, "show time.zone").after("  from")
        self.assertEqual(origin(), "default")
        self.assertEqual(origin("set time.zone Europe/Berlin"), "set")
        self.assertEqual(origin(), "database")

    def test_takes_the_rest_of_a_request_with_a_refusal(self):
        run = self.run_script("set transport.localPort 70000 time.zone Europe/Paris", "get time.zone transport.localPort")
        self.assertEqual(run.code, 1)
        self.assertIn("refused: transport.localPort: must be a whole number from 1 to 65535", run.err)
        self.assertIn("transport.localPort = 5060", run.out)
        self.assertEqual(self.get("time.zone"), "Europe/Paris")

    def test_tells_an_unchanged_value_and_calls_it_done(self):
        run = self.run_script("set display.brightness 80")
        self.assertEqual((run.code, run.lines()[-1]), (0, "display.brightness = 80  (unchanged)"))

    def test_tells_a_value_that_is_not_taken_again_and_stores_it(self):
        run = self.run_script("set transport.protocol udp", "import transport.protocol")
        self.assertEqual(run.code, 1)
        self.assertIn("transport.protocol not taken again", run.out)
        self.assertEqual(run.lines()[-1], "transport.protocol is stored as udp")

    def test_refuses_a_group_that_does_not_agree_and_keeps_it(self):
        run = self.run_script("set ip.address 10.1.1.5", "get ip.address", "import ip.address")
        self.assertEqual(run.code, 1)
        self.assertIn("refused: group IpAddressing: the gateway 192.168.1.1 is not in the network 10.1.1.0/24", run.err)
        self.assertIn("ip.address keeps its value", run.err)
        self.assertIn("ip.address = 192.168.1.20", run.out)
        self.assertIn("ip.address: the database holds nothing", run.out)

    def test_takes_a_group_that_agrees(self):
        run = self.run_script("set ip.address 10.1.1.5 ip.netmask 255.255.0.0 ip.gateway 10.1.0.1")
        self.assertEqual((run.code, run.lines()[-3:]),
                         (0, ["ip.address = 10.1.1.5", "ip.netmask = 255.255.0.0", "ip.gateway = 10.1.0.1"]))
        self.assertEqual(self.get("ip.gateway"), "10.1.0.1")

    def test_takes_nothing_of_a_group_with_a_refused_member_in_either_order(self):
        for request in ("ip.address 192.168.1.9 ip.netmask x", "ip.netmask x ip.address 192.168.1.9"):
            run = self.run_script("set " + request, "get ip.address", "set ip.gateway 192.168.1.3", "get ip.address")
            self.assertEqual(run.code, 1)
            self.assertIn("ip.address keeps its value", run.err)
            self.assertEqual(run.out.count("ip.address = 192.168.1.20"), 2, run.out)

    def test_needs_both_ends_of_the_port_range_in_order(self):
        run = self.run_script("set transport.rtpFirstPort 20000",
                              "set transport.rtpFirstPort 20000 transport.rtpLastPort 30000")
        self.assertIn("refused: group RtpPorts: the port range must end after its begin: 20000 to 16482", run.err)
        self.assertEqual(self.get("transport.rtpLastPort"), "30000")

    def test_refuses_one_item_named_twice(self):
        run = self.run_script("set time.zone UTC time.zone Europe/Rome")
        self.assertEqual(run.code, 1)
        self.assertIn("named twice", run.err)

    def test_refuses_what_has_no_setter(self):
        run = self.run_script("set device.firmware 5.0.0")
        self.assertIn("refused: device.firmware: no setter available", run.err)

    def test_sends_local_items_to_the_other_command_and_the_other_way_round(self):
        run = self.run_script('set phone.room "Room 12"', "changed time.zone UTC")
        self.assertEqual(run.code, 1)
        self.assertIn("use: changed phone.room VALUE", run.err)
        self.assertIn("use: set time.zone VALUE", run.err)

    def test_changes_local_items_for_good(self):
        run = self.run_script('changed phone.room "Room 12"', "changed key.function-3 speed-dial", "list key.function")
        self.assertEqual(run.code, 0)
        self.assertEqual(run.row("key.function-3")[1], "speed-dial")
        self.assertEqual(run.row("key.function-1")[1], "none")
        again = self.run_script("show key.function-3", "get phone.room")
        self.assertEqual(again.after("  imported"), "0 from the database, 2 from the local store")
        self.assertEqual(again.after("  from"), "local store")
        self.assertEqual(again.lines()[-1], 'phone.room = "Room 12"')

    def test_tells_when_the_service_refuses_a_local_value(self):
        run = self.run_script("changed handset.volume-2 11", "get handset.volume-2")
        self.assertEqual(run.code, 1)
        self.assertIn("must be a whole number from 0 to 10", run.err)
        self.assertEqual(run.lines()[-1], "handset.volume-2 = 5")
        again = self.run_script()
        self.assertEqual(again.after("  refused"), "1")
        self.assertIn("refused handset.volume-2: must be", again.err)

    def test_keeps_markup_letters_and_blanks_of_values(self):
        value = "a<b> & \\\"c\\\" 'd'  Zürich"
        self.assertEqual(self.run_script('set snmp.location "%s"' % value).code, 0)
        self.assertEqual(self.get("snmp.location"), "\"a<b> & \"c\" 'd'  Zürich\"")

    def test_sets_an_empty_value(self):
        self.run_script("set line.label-2 Desk")
        self.run_script('set line.label-2 ""')
        self.assertEqual(self.get("line.label-2"), '""')

    def test_shows_control_characters_escaped(self):
        run = self.run_script("changed phone.room \x1b[31mred", "get \x1b[2J", "\x1b]0;title\x07")
        self.assertNotIn("\x1b", run.out + run.err)
        self.assertNotIn("\x07", run.out + run.err)
        self.assertIn("\\x1b[31mred", run.out)

    def test_shows_requests_and_replies_indented(self):
        run = self.run_script("set line.label-2 Desk", "traffic 1")
        self.assertIn("""  <Schema name="SipLines">
    <ReasonForMessage>update_request</ReasonForMessage>
    <Entry>
      <Line>2</Line>
      <Label>Desk</Label>
    </Entry>
  </Schema>
""", run.out)
        self.assertIn("<ReasonForMessage>update_response</ReasonForMessage>", run.out)

    def test_logs_sensitive_changes_alone(self):
        run = self.run_script("set transport.localPort 5070 time.zone Europe/Rome line.forwarding-2 false", "securitylog")
        self.assertIn("ok  TransportSettings set LocalPort(5070)", run.out)
        self.assertIn("ok  SipLines Line:2 set CallForwardingAllowed(false)", run.out)
        self.assertNotIn("set Zone", run.out)
        self.assertEqual(len(self.run_script("securitylog 1").out.split("set CallForwardingAllowed")), 2)

    def test_tells_a_value_that_is_stored_but_not_in_the_security_log(self):
        os.mkdir(self.device)
        os.symlink("/dev/full", os.path.join(self.device, "security.log"))
        run = self.run_script("set snmp.contact abc", "import snmp.contact")
        self.assertEqual(run.code, 1)
        self.assertIn("snmp.contact = abc\n", run.out)
        self.assertIn("refused: the security log could not be written: ", run.err)
        self.assertNotIn("set failed", run.err)
        self.assertEqual(run.lines()[-1], "snmp.contact is stored as abc")

    def test_refuses_what_no_request_can_carry(self):
        run = Run(subprocess.run([SDM, "run", "--device", self.device], input=b"set snmp.contact \xff\xfe\n",
                                 capture_output=True, timeout=60))
        self.assertEqual(run.code, 1)
        self.assertIn("refused: snmp.contact: must be UTF-8 text", run.err)
        self.assertNotIn("the database did not take", run.out)

    def test_refuses_an_empty_root_id_once(self):
        run = self.run_script('set "" x')
        self.assertEqual((run.code, run.err.count("refused:")), (1, 1), run.err)


if __name__ == "__main__":
    unittest.main()
