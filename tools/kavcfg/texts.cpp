#include "tools/kavcfg/texts.h"

Label usage_label = {
    "usage: kavcfg [-f FILE] [-u DATABASE] [--japanese] COMMAND"
    "|  get KEY             print the value of a key"
    "|  set KEY=VALUE ...   change values: all of them or, when one is refused, none"
    "|  set KEY ...         the same for a password, a line of standard input for each"
    "|  check               test all values: FILE:LINE: KEY: FAULT"
    "|  events              print the jobs of each event"
    "|  diff [OLD]          what differs from the file OLD, or from the defaults"
    "|A new UpsModel brings its line settings, its ratings and the default jobs of all"
    "|events along, but for what is given beside it."
    "|-f FILE      the configuration (ups.cfg)"
    "|-u DATABASE  the UPS models (upstyp.ups)"
    "|--japanese   texts and default jobs in Japanese"
    "|Exit status: 0 all is well, 1 a value was refused, differs or is at fault, or a"
    "|file can't be read or written, 2 wrong usage.",
    "使用法: kavcfg [-f FILE] [-u DATABASE] [--japanese] COMMAND"
    "|  get KEY             キーの値を表示"
    "|  set KEY=VALUE ...   値を変更 (1 個でも拒否されると、どれも変更しない)"
    "|  set KEY ...         パスワードを変更 (標準入力から 1 行ずつ読み込む)"
    "|  check               すべての値を検査 (FILE:LINE: KEY: FAULT)"
    "|  events              各イベントのジョブを表示"
    "|  diff [OLD]          ファイル OLD または既定値との違いを表示"
    "|UpsModel を変更すると、通信条件、定格、全イベントの既定ジョブも"
    "|変わります。同時に指定した値はそのまま使います。"
    "|-f FILE      設定ファイル (ups.cfg)"
    "|-u DATABASE  UPS データベース (upstyp.ups)"
    "|--japanese   日本語の表示と既定ジョブ"
    "|終了コード: 0 正常、1 値の拒否、違い、誤り、またはファイルの読み書きの失敗、"
    "|2 使用法の誤り"};

Label unreadable_label = {"can't read %s", "%s を読み込めません。"};
Label unwritable_label = {"can't write %s", "%s に書き込めません。"};
Label database_unreadable_label = {"can't read the database %s", "データベース %s を読み込めません。"};
Label no_such_key_label = {"%s: no such key", "%s: このキーはありません。"};
Label given_twice_label = {"%s: given twice", "%s: 2 回指定されています。"};
Label value_missing_label = {"%s: a value is needed, KEY=VALUE", "%s: KEY=VALUE の形で値を指定してください。"};
Label password_given_label = {"%s: give the key alone, the password is read from standard input",
                              "%s: キーだけを指定してください。パスワードは標準入力から読み込みます。"};
Label password_missing_label = {"%s: standard input has no line for it", "%s: 標準入力にパスワードの行がありません。"};
Label password_hidden_label = {"%s: a password is not printed", "%s: パスワードは表示しません。"};
Label not_convertible_label = {"%s: a character can not be stored", "%s: 保存できない文字があります。"};
Label no_value_label = {"%s: not set, and there is no default", "%s: 設定も既定値もありません。"};
Label hidden_label = {"(hidden)", "(非表示)"};
Label follower_label = {"follows from other keys, it can't be set", "ほかのキーに従うため、設定できません。"};
