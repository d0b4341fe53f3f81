#include "setup/configuration/texts.h"

Label kept_label = {"%s: %s was set by another program meanwhile and is kept",
                    "%s: %s はほかのプログラムが変更したため、そのまま残しました。"};
Label overwritten_label = {"%s: %s was set by another program meanwhile and is overwritten",
                           "%s: %s はほかのプログラムが変更しましたが、上書きしました。"};
Label not_saved_label = {"%s: not saved: %s", "%s: 保存できませんでした: %s"};
Label unsavable_label = {"%s can not be saved: %s", "%s を保存できません: %s"};
Label lock_held_label = {"another program is saving it", "ほかのプログラムが保存しています。"};
Label refused_label = {"%s: %s and the settings that follow it could not be saved",
                       "%s: %s とそれに続く設定は保存できませんでした。"};
Label unsaved_label = {"%s holds changes that an earlier session could not save",
                       "%s に前回保存されなかった変更があります。"};
Label copy_label = {"a write was interrupted, the whole old file is %s",
                    "書き込みが中断しました。元のファイル全体は %s にあります。"};
