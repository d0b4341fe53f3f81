#include "tools/kavcfg/texts.h"

Label usage_label = {
    "usage: kavcfg [OPTION]... COMMAND [ARGUMENT]..."
    "|  get KEY...           print values"
    "|  list                 print KEY=VALUE for every setting but passwords (--keys: the keys alone)"
    "|  set KEY=VALUE...     change values: all of them or, when one is refused, none"
    "|  set KEY...           the same for passwords, a line of standard input for each"
    "|  apply FILE           change what FILE says, KEY=VALUE lines or a JSON object (-: standard input)"
    "|  unset KEY...         back to the defaults"
    "|  new [KEY=VALUE...]   a new configuration with the defaults"
    "|  check                test the whole file: FILE:LINE: KEY: FAULT, warnings begin with warning:"
    "|  fix [KEY...]         safe repairs (--dry-run: tell them, --write: make them); of misspelt keys those given"
    "|  events               print the jobs of each event"
    "|  timeline EVENT       draw when the jobs of an event run"
    "|  job list EVENT       print the jobs of an event, by number"
    "|  job add EVENT FUNCTION [PARAMETER=VALUE]... [TIMING=WORD[:NUMBER]]"
    "|  job remove EVENT NUMBER"
    "|  diff [OLD]           what differs from the file OLD, or from the defaults"
    "|  explain KEY          what is known of a setting"
    "|  probe                look for a UPS on the serial ports"
    "|  schema               JSON Schema of what apply takes"
    "|A new UpsModel brings its line settings, its ratings and the default jobs of all"
    "|events along, but for what is given beside it."
    "|-f FILE      the configuration (ups.cfg; -: standard input, of commands that only read)"
    "|-C DIR       work in that directory"
    "|-u DATABASE  the UPS models (upstyp.ups, beside the configuration first)"
    "|--dry-run    commands that change: write nothing"
    "|--diff       commands that change: print what changes"
    "|--json       these, explain, probe: one JSON object"
    "|--new        apply: where there is no configuration, make one"
    "|--strict     check: warnings are faults"
    "|--japanese   texts and default jobs in Japanese"
    "|--help, --version"
    "|Exit status: 0 all is well, 1 a value was refused, differs or is at fault, 2 wrong usage,"
    "|3 a file can't be read or written.",
    "使用法: kavcfg [OPTION]... COMMAND [ARGUMENT]..."
    "|  get KEY...           値を表示"
    "|  list                 パスワード以外のすべての設定を KEY=VALUE で表示 (--keys: キーだけ)"
    "|  set KEY=VALUE...     値を変更 (1 個でも拒否されると、どれも変更しない)"
    "|  set KEY...           パスワードを変更 (標準入力から 1 行ずつ読み込む)"
    "|  apply FILE           FILE の KEY=VALUE 行または JSON オブジェクトのとおりに変更 (-: 標準入力)"
    "|  unset KEY...         既定値に戻す"
    "|  new [KEY=VALUE...]   既定値で新しい設定ファイルを作成"
    "|  check                ファイル全体を検査 (FILE:LINE: KEY: FAULT、警告は warning: で始まる)"
    "|  fix [KEY...]         安全な修正 (--dry-run: 表示、--write: 実行)、キーの誤りは指定したものだけ"
    "|  events               各イベントのジョブを表示"
    "|  timeline EVENT       イベントのジョブの実行時刻を図で表示"
    "|  job list EVENT       イベントのジョブを番号順に表示"
    "|  job add EVENT FUNCTION [PARAMETER=VALUE]... [TIMING=WORD[:NUMBER]]"
    "|  job remove EVENT NUMBER"
    "|  diff [OLD]           ファイル OLD または既定値との違いを表示"
    "|  explain KEY          設定の説明を表示"
    "|  probe                COM ポートの UPS を検出"
    "|  schema               apply が受け付けるものの JSON Schema"
    "|UpsModel を変更すると、通信条件、定格、全イベントの既定ジョブも"
    "|変わります。同時に指定した値はそのまま使います。"
    "|-f FILE      設定ファイル (ups.cfg、-: 標準入力、読むだけのコマンド)"
    "|-C DIR       そのディレクトリで実行"
    "|-u DATABASE  UPS データベース (upstyp.ups、まず設定ファイルと同じ場所)"
    "|--dry-run    変更するコマンド: 書き込まない"
    "|--diff       変更するコマンド: 変更を表示"
    "|--json       変更するコマンド、explain、probe: JSON オブジェクトを表示"
    "|--new        apply: 設定ファイルがなければ作成"
    "|--strict     check: 警告も誤りとする"
    "|--japanese   日本語の表示と既定ジョブ"
    "|--help、--version"
    "|終了コード: 0 正常、1 値の拒否、違い、誤り、2 使用法の誤り、"
    "|3 ファイルの読み書きの失敗。"};

Label no_command_label = {"a command is needed, --help lists them", "コマンドを指定してください (--help で一覧)。"};
Label no_such_command_label = {"unknown command '%s', --help lists them",
                               "コマンド '%s' はありません (--help で一覧)。"};
Label no_such_option_label = {"unknown option '%s', or its value is missing",
                              "オプション '%s' がないか、値がありません。"};
Label too_few_label = {"'%s' needs an argument", "'%s' には引数が必要です。"};
Label too_many_label = {"'%s' does not take '%s'", "'%s' に '%s' は指定できません。"};
Label no_input_label = {"'%s' needs a file, not standard input", "'%s' には標準入力でなくファイルが必要です。"};

Label unreadable_label = {"can't read %s: %s", "%s を読み込めません: %s"};
Label unwritable_label = {"can't write %s: %s", "%s に書き込めません: %s"};
Label database_unreadable_label = {"can't read the database %s: %s", "データベース %s を読み込めません: %s"};
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
Label not_json_label = {"this is no JSON", "JSON ではありません。"};
Label not_simple_label = {"%s: a text, a number, true, false or null is needed",
                          "%s: 文字列、数値、true、false、null のどれかが必要です。"};

Label fix_how_label = {"'fix' needs --dry-run or --write", "'fix' には --dry-run か --write が必要です。"};
Label not_misspelt_label = {"%s: is no misspelt key that can be changed", "%s: 修正できるキーの誤りではありません。"};

Label no_such_event_label = {"%s: no such event, there are 0 to 24", "%s: このイベントはありません (0 から 24)。"};
Label no_such_job_label = {"%s has no job %s", "%s にジョブ %s はありません。"};
Label no_such_function_label = {"there is no function %s: %s", "機能 %s はありません (%s)。"};
Label no_such_parameter_label = {"%s has no %s: %s", "%s に %s はありません (%s)。"};
Label no_such_word_label = {"there is no %s here: %s", "%s は使えません (%s)。"};
Label no_room_label = {"%s: there is no room for one more job", "%s: これ以上ジョブを追加できません。"};
Label seconds_label = {"%s s", "%s 秒"};
Label minutes_label = {"%s min", "%s 分"};
Label hours_label = {"%s h", "%s 時間"};
Label shutdown_begins_label = {"The shutdown begins", "シャットダウン開始"};
Label system_down_label = {"The system is down", "システム停止"};
Label ups_off_label = {"The UPS is off", "UPS 停止"};
Label battery_empty_label = {"The battery is empty", "バッテリ切れ"};

Label unknown_answer_label = {"unknown answer '%s'", "未知の応答 '%s'"};
Label no_answer_label = {"no answer", "応答がありません。"};
Label locked_label = {"locked by process %s", "プロセス %s が使用しています。"};
Label held_label = {"in use by another program", "ほかのプログラムが使用しています。"};
Label permission_label = {"permission denied", "使用する権限がありません。"};
