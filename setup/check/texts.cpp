#include "setup/check/texts.h"

Label too_long_label = {"is longer than %s bytes", "%s バイトを超えています。"};
Label character_label = {"'%s' is not accepted, it takes %s", "'%s' は使えません (%s)。"};
Label only_label = {"only %s", "使える文字: %s"};
Label all_but_label = {"all but %s", "使えない文字: %s"};
Label blanks_label = {"blanks", "空白"};
Label range_label = {"is not from %s to %s", "%s から %s の範囲にありません。"};
Label yes_or_no_label = {"is neither yes nor no", "yes でも no でもありません。"};
Label shutdown_label = {"can be yes only with SysDownAllowed=yes", "SysDownAllowed=yes のときだけ yes にできます。"};
Label model_unknown_label = {"is not in the database %s", "データベース %s にありません。"};
Label model_meant_label = {"is not in the database %s, did you mean %s?",
                           "データベース %s にありません。%s の誤りではありませんか?"};
Label model_late_label = {"stands after the first %s models of the database %s, which alone can be chosen",
                          "選択できるのは最初の %s 機種だけです。データベース %s でその後にあります。"};
Label no_model_label = {"no UPS model is chosen", "UPS の機種が選択されていません。"};
Label cable_label = {"is the code of no cable", "このコードのケーブルはありません。"};
Label mail_label = {"is kept only with MailEnableFlag=yes", "MailEnableFlag=yes のときだけ保存されます。"};
Label becomes_label = {"is not in the usual form, write '%s'", "標準の形ではありません。'%s' と書いてください。"};

Label job_label = {"job %s: %s", "ジョブ %s: %s"};
Label job_form_label = {"is not of the form NAME(ARGUMENTS)TIMING", "NAME(ARGUMENTS)TIMING の形ではありません。"};
Label function_label = {"there is no function %s", "機能 %s はありません。"};
Label parameter_label = {"%s: %s", "%s: %s"};
Label parameter_value_label = {"is empty or out of its range", "空か、範囲にありません。"};
Label number_label = {"is not a whole number", "整数ではありません。"};
Label level_label = {"there is no level %s: %s", "優先度 %s はありません (%s)。"};
Label timing_label = {"there is no timing '%s' here: %s", "タイマ '%s' は使えません (%s)。"};
Label too_many_jobs_label = {"has more than %s jobs", "ジョブが %s 個を超えています。"};
Label job_end_label = {"each job must end with one ';'", "各ジョブの最後に ';' が 1 個必要です。"};
Label last_job_label = {"SHUTDOWN must be the last job, and there only once",
                        "SHUTDOWN は最後に 1 回だけ指定してください。"};

Label duplicate_label = {"is already in line %s, this line does not count",
                         "%s 行目にすでにあるため、この行は使われません。"};
Label covered_label = {"is hidden by the '[' in line %s", "%s 行目の '[' のため読み込まれません。"};
Label no_place_label = {"settings after a topic are not found: put one in front of it",
                        "トピックより後の設定は読み込まれません。トピックの前に設定を置いてください。"};
Label pieces_label = {"is longer than %s bytes and is read in pieces",
                      "%s バイトを超えるため、分割して読み込まれます。"};
Label nul_label = {"ends at a byte of value 0", "値 0 のバイトで終わっています。"};
Label carriage_return_label = {"ends in a carriage return", "行末に復帰文字があります。"};
Label junk_label = {"is neither a setting, a comment nor a topic", "設定でもコメントでもトピックでもありません。"};
Label misspelt_label = {"did you mean %s?", "%s の誤りではありませんか?"};
Label after_topic_label = {"is not found, since it stands after the topic in line %s",
                           "%s 行目のトピックより後にあるため、読み込まれません。"};
Label byte_order_label = {"begins with a byte order mark, which makes another key of its key",
                          "バイト順マークで始まるため、キーが別のものになります。"};
Label inner_return_label = {"holds carriage returns that end no line: all of it is one line",
                            "途中の復帰文字は行を区切らないため、全体で 1 行になります。"};
Label no_encoding_label = {"holds bytes that are neither UTF-8 nor EUC-JP",
                           "UTF-8 でも EUC-JP でもないバイトがあります。"};
Label two_encodings_label = {"is %s, but line %s is %s: a file has one encoding",
                             "文字コードが %s です。%s 行目は %s です。"};

Label battery_label = {"the battery is empty after %s minutes, but the shutdown is over after %s",
                       "バッテリは %s 分で空になりますが、シャットダウンは %s 分後に終わります。"};
Label no_shutdown_label = {"the shutdown is allowed, but no event has a SHUTDOWN job",
                           "シャットダウンは許可されていますが、SHUTDOWN のジョブがありません。"};
Label mail_disabled_label = {"job %s sends e-mail, but MailEnableFlag is not yes",
                             "ジョブ %s はメールを送信しますが、MailEnableFlag が yes ではありません。"};
Label mail_missing_label = {"job %s sends e-mail, but %s is empty",
                            "ジョブ %s はメールを送信しますが、%s が空欄です。"};
Label no_message_label = {"job %s: message %s is not in %s", "ジョブ %s: メッセージ %s は %s にありません。"};
Label folder_label = {"there is no directory %s", "ディレクトリ %s がありません。"};
Label default_password_label = {"is the default password", "既定値のパスワードです。"};
Label windows_end_label = {"has a Windows line end: with these a save makes 'upsdata..dat' of 'upsdata.csv'",
                           "行末が Windows の形です。保存すると 'upsdata.csv' から 'upsdata..dat' を作ります。"};

Label mark_removed_label = {"the byte order mark goes", "バイト順マークを削除します。"};
Label returns_removed_label = {"from here on, carriage returns go or become line ends",
                               "ここから復帰文字を削除するか、行の区切りにします。"};
Label comment_changed_label = {"';' begins the comment, since '#' lets its '[' hide lines",
                               "コメントの '[' が行を隠さないように '#' を ';' にします。"};
Label key_changed_label = {"becomes %s", "%s にします。"};
Label tabs_removed_label = {"the tabs in its value go", "値の中のタブを削除します。"};
Label repeat_removed_label = {"goes, since an earlier line says the same", "前の行と同じため、削除します。"};
