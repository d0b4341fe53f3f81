#include "setup/upsprobe_texts.h"

Label probeframe_label01 = {"%s:The port is being checked....", "%s: COM ポートを確認しています...."};
Label probeframe_label02 = {
    "The following UPS models and the communication ports were detected.| Is this configuration OK ?",
    "次の UPS 機種と COM ポートを検出しました。| この設定でよろしいですか?"};
Label probeframe_label03 = {"UPS Type:", "UPS 機種名:"};
Label probeframe_label04 = {"Comport:", "COM ポート:"};
Label probeframe_label05 = {
    "Halvoris was not able to be detected from the communication port.| Please select one from the following options.",
    "COM ポートから Halvoris を検出できませんでした。| 次のどちらかを選択してください。"};
Label probeframe_label06 = {"Automatic detection of the UPS model is executed again", "UPS 機種をもう一度自動検出"};
Label probeframe_label07 = {"The UPS model and the communication port are set manually",
                            "UPS 機種と COM ポートを手動で設定"};
Label probe_ok_label = {"<ENTER>=OK", "<ENTER>=OK"};
Label probe_cancel_label = {"<ESC>=CANCEL", "<ESC>=CANCEL"};
