#include "setup/texts.h"

Label err_start = {"your terminalsize should have 24 rows, 80 columns, please resize",
                   "端末のサイズを 24 行、80 桁以上に変更してください。"};
Label no_terminal = {"standard input and output must be a terminal that can move its cursor",
                     "標準入力と標準出力には、カーソルを動かせる端末が必要です。"};

Label first_menu_title = {"KAVLON Configuration", "KAVLON インストール"};
Label first_menu_create = {"Create a new configuration file", "新しい設定ファイルを作成"};
Label first_menu_exit = {"Exit Configuration", "設定を終了"};

Label probe_menu_automatic = {"Automatic probing of serial device and UPS", "COM ポートと UPS を自動検出"};
Label probe_menu_skip = {"Skip automatic probe", "自動検出を省略"};

Label session_title = {"KAVLON Pro Configuration", "KAVLON Pro 設定一覧"};
Label session_entries[8] = {
    {"Set UPS values", "UPS の設定"},
    {"Set System values", "システムの設定"},
    {"Set Path values", "パスの設定"},
    {"Set Event parameter", "イベントの設定"},
    {"Set Email options", "メールの設定"},
    {" ", " "},
    {"Save Configuration & Exit", "設定を保存して終了"},
    {"Exit Menu", "メニューを終了"},
};

Label database_error_label = {"UPS-Database error: '%s'|check existence of file!",
                              "UPS データベースのエラー: '%s'|ファイルがあるか確認してください。"};
Label no_models_label = {"%s holds no UPS model: it is empty, or not whole",
                         "%s に UPS 機種がありません。空か、壊れています。"};
Label file_missing_label = {"%s doesn't exist(press key) !", "%s がありません。(キーを押す)"};
Label file_exists_label = {"Filename '%s'|allready exists !", "ファイル '%s' は|既に存在します。"};
Label file_open_label = {"Can't open file:|'%s'", "ファイルを開けません。|'%s'"};
