#include "screen/texts.h"

Label keyline_label = {"<ESC = Exit>                                    <Shift + '?' = help>",
                       "<ESC = 終了>                                  <Shift + '?' = ヘルプ>"};
Label background_label = {"KAVLON Configuration", "KAVLON 設定"};
Label error_label = {"E R R O R !!", "エ ラ ー !!"};
