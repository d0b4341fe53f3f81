#include "setup/kavcfg/texts.h"

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

Label too_long_label = {"is longer than %s bytes", "%s バイトを超えています。"};
Label character_label = {"its byte %s is not accepted", "%s バイト目の文字は使えません。"};
Label range_label = {"is not from %s to %s", "%s から %s の範囲にありません。"};
Label yes_or_no_label = {"is neither yes nor no", "yes でも no でもありません。"};
Label shutdown_label = {"can be yes only with SysDownAllowed=yes", "SysDownAllowed=yes のときだけ yes にできます。"};
Label model_unknown_label = {"is not in the database %s", "データベース %s にありません。"};
Label no_model_label = {"no UPS model is chosen", "UPS の機種が選択されていません。"};
Label cable_label = {"is the code of no cable", "このコードのケーブルはありません。"};
Label mail_label = {"is kept only with MailEnableFlag=yes", "MailEnableFlag=yes のときだけ保存されます。"};
Label becomes_label = {"would become '%s'", "'%s' になります。"};
Label follower_label = {"follows from other keys, it can't be set", "ほかのキーに従うため、設定できません。"};

Label job_label = {"job %s: %s", "ジョブ %s: %s"};
Label job_form_label = {"is not of the form NAME(ARGUMENTS)TIMING", "NAME(ARGUMENTS)TIMING の形ではありません。"};
Label function_label = {"there is no function %s", "機能 %s はありません。"};
Label parameter_label = {"%s: %s", "%s: %s"};
Label parameter_value_label = {"is empty or out of its range", "空か、範囲にありません。"};
Label number_label = {"is not a whole number", "整数ではありません。"};
Label level_label = {"there is no level %s", "優先度 %s はありません。"};
Label timing_label = {"there is no timing '%s' here", "タイマ '%s' は使えません。"};
Label too_many_jobs_label = {"has more than %s jobs", "ジョブが %s 個を超えています。"};
Label job_end_label = {"each job must end with one ';'", "各ジョブの最後に ';' が 1 個必要です。"};
Label last_job_label = {"SHUTDOWN must be the last job, and there only once",
                        "SHUTDOWN は最後に 1 回だけ指定してください。"};

Label duplicate_label = {"is already in line %s, this line does not count",
                         "%s 行目にすでにあるため、この行は使われません。"};
Label covered_label = {"is hidden by the '[' in line %s", "%s 行目の '[' のため読み込まれません。"};
Label no_place_label = {"settings behind a topic are not found: put one in front of it",
                        "トピックより後の設定は読み込まれません。トピックの前に設定を置いてください。"};
Label pieces_label = {"is longer than %s bytes and is read in pieces",
                      "%s バイトを超えるため、分割して読み込まれます。"};
Label nul_label = {"ends at a byte of value 0", "値 0 のバイトで終わっています。"};
Label carriage_return_label = {"ends in a carriage return", "行末に復帰文字があります。"};
