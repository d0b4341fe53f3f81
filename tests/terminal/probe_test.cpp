// The detection of a UPS on simulated serial ports, in a mount namespace of its own.
#include <gtest/gtest.h>

#include "tests/terminal/ports.h"
#include "tests/terminal/session.h"

namespace {

void detect(Terminal &t) { t.press({Enter, Enter}); }

TEST(Detection, TakesAModelAndPortOverOnceItIsConfirmed) {
  Terminal t;
  if (!start_with_ports(t, {"-0", "absent", "-1", "--answer XXK-TRN010VQ10\\r", "-2", "--model K-TRN010VQ12"},
                        {"-debug"}))
    GTEST_SKIP();
  for (const bool confirmed : {false, true}) {
    detect(t);
    t.see("/dev/ttyS0:The port is being checked....");
    t.see("/dev/ttyS2:The port is being checked....", 15000);
    t.type("\r\r");  // typed while the ports are tried: answers nothing
    t.see("Is this configuration OK ?", 15000);
    EXPECT_EQ(t.text(13, 8, 65), "UPS Type:                                         K-TRN010VQ-110 ");
    EXPECT_EQ(t.cursor(), (Position{10, 6}));
    t.press({Space, confirmed ? KeypadEnter : Escape});
    EXPECT_EQ(t.find("UPS Type:").row, -1);
    choose(t, kUps);
    EXPECT_EQ(t.text(13, 26, 15), confirmed ? "K-TRN010VQ-110 " : "Unknown        ");
    EXPECT_EQ(t.text(8, 26, 11), confirmed ? "/dev/ttyS2:" : "/dev/ttyS0:");
    t.press({Escape, Escape});
  }
  const std::string trace = t.file("setup.dbg");
  EXPECT_TRUE(trace.ends_with(R"(show_probe_win: port[2] returned %MK-TRN010VQ12)"
                              "\r\n"
                              R"(show_probe_win: prepared K-TRN010VQ12
show_probe_win: got db_model K-TRN010VQ-110
after draw_found_frame check_model_list with |K-TRN010VQ-110|
after draw_found_frame check_model_list get |K-TRN010VQ-110|
after draw_found_frame get_act_ups()1=Unknown|
after draw_found_frame get_act_ups()2=Unknown|
after draw_found_frame get_act_ups()3=K-TRN010VQ-110|
ask_for_probe: return 3
maskelib.c:edit_field:field_index=0|buffer=Unknown|
)")) << trace;
}

TEST(Detection, OffersToTryAgainWhenNoPortAnswers) {
  Terminal t;
  if (!start_with_ports(t, {"-0", "absent", "-1", "--silent", "-2", "absent", "-3", "--chatter"})) GTEST_SKIP();
  detect(t);
  t.see("Halvoris was not able to be detected", 8500);
  t.see("Please select one from the following options.");
  t.press({Enter});
  t.see("/dev/ttyS0:The port is being checked....");
  t.see("Halvoris was not able to be detected", 15000);
  t.press({Escape});
  t.see("KAVLON Pro Configuration");
}

}  // namespace
