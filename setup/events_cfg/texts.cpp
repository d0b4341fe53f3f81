#include "setup/events_cfg/texts.h"

Label MENU_EVENT_TITLE = {"Eventlist", "イベント一覧"};
Label MENU_EVENT_ADD = {"Add Job to List", "ジョブを一覧に追加"};
Label MENU_EVENT_DEL = {"Delete Job from List", "ジョブを一覧から削除"};
Label MENU_EVENT_EXIT = {"Exit Menu", "メニューを終了"};
Label no_events_label = {"No events predefined for | '%s' UPS", "イベントが定義されていません:| UPS '%s'"};
Label unknown_function_label = {"The function of this job is not known,|the job stays as it is",
                                "このジョブの機能は不明です。|ジョブは変更されません。"};
Label hlptxt_label06 = {"Select the UPS-Event wherein you want to trigger some actions",
                        "ジョブを実行する UPS イベントを選択してください。"};
Label hlptxt_label07 = {"Eventlist help", "イベント一覧のヘルプ"};
Label hlptxt_label08 = {"Joblist help", "ジョブ一覧のヘルプ"};
Label hlptxt_label09 = {"List of actions (top-down) executed at the above selected event",
                        "上記のイベントで実行するジョブの一覧です (上から順に実行)。"};
Label hlptxt_label14 = {"Delete action at this event", "このイベントのジョブを削除します。"};
Label hlptxt_label15 = {"Delete Job help", "ジョブ削除のヘルプ"};

Label funcframe_label01 = {"Parameter Settings: ", "パラメータの設定: "};
Label funcframe_label03 = {"Timer Settings: ", "タイマの設定: "};
Label funcframe_label04 = {"seconds", "秒"};
Label funcframe_label05 = {"minutes", "分"};
Label syslog_list_title = {"syslog level: ", "syslog 優先度: "};
Label attach_questions[4] = {
    {"Attach data log to email?", "データログを添付しますか?"},
    {"Attach text log to email?", "テキストログを添付しますか?"},
    {"Attach trouble record to email?", "障害記録を添付しますか?"},
    {"Attach operation info to email?", "運転情報記録を添付しますか?"},
};
Label empty_field_label = {"field can not be left blanc| ", "この項目は空欄にできません。| "};

Label job_too_long_label = {"This job is too long: it can not be stored", "このジョブは長すぎるため、保存できません。"};
Label list_full_label = {"The list of this event is full: a job of it is lost",
                         "このイベントの一覧がいっぱいです。ジョブが失われます。"};

Label parameter_help_title = {"Parameter Settings help", "パラメータ設定のヘルプ"};
Label timer_help_title = {"Timer Settings help", "タイマ設定のヘルプ"};
Label timing_help_label = {
    "Once: Execute only once, no repeat"
    "|Always: Execute every time we read the event again (every CHECKRATE)"
    "|Periodic: Execute every x seconds"
    "|Timed: Execute only if event is still present after delay of x seconds"
    "|Repeated: Execute only if event is still present after delay"
    "|of x seconds, repeated after x seconds",
    "一回のみ: 一度だけ実行し、繰り返しません。"
    "|毎回実行: イベントを読み取るたびに実行します (UPS 監視間隔ごと)。"
    "|一定間隔: x 秒ごとに実行します。"
    "|遅延実行: x 秒後もイベントが続いている場合だけ実行します。"
    "|遅延反復: x 秒後もイベントが続いている場合だけ実行し、"
    "|その後 x 秒ごとに繰り返します。"};
Label scheduler_timing_help_label = {"Execute this job before the scheduled event",
                                     "予定されたイベントの前に、このジョブを実行します。"};
Label repeat_time_help_label = {"Enter repeat time in seconds", "繰り返し時間を秒で入力してください。"};
Label scheduler_time_help_label = {"Enter time in minutes", "時間を分で入力してください。"};
