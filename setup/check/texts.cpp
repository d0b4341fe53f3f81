#include "setup/check/texts.h"

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
Label no_place_label = {"settings after a topic are not found: put one in front of it",
                        "トピックより後の設定は読み込まれません。トピックの前に設定を置いてください。"};
Label pieces_label = {"is longer than %s bytes and is read in pieces",
                      "%s バイトを超えるため、分割して読み込まれます。"};
Label nul_label = {"ends at a byte of value 0", "値 0 のバイトで終わっています。"};
Label carriage_return_label = {"ends in a carriage return", "行末に復帰文字があります。"};
