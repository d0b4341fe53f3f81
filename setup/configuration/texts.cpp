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
Label copy_label = {"%s is the whole file of an interrupted write", "%s は書き込みが中断したファイルの写しです。"};
