#include "setup/settings/texts.h"

Label stdframe_label01 = {"Location            :", "設置場所            :"};
Label stdframe_label02 = {"COM port Options    :", "COM ポート設定      :"};
Label stdframe_label03 = {"Write to logfile (s):", "ログ書込み間隔 (秒) :"};
Label stdframe_label04 = {"Logfile max. [kB]   :", "ログ最大容量 [kB]   :"};
Label stdframe_label05 = {"Caution Temp ['C]   :", "注意温度 ['C]       :"};
Label stdframe_label06 = {"Warning Temp ['C]   :", "警告温度 ['C]       :"};
Label stdframe_label07 = {"UPS modelname       :", "UPS 機種名          :"};
Label stdframe_label08 = {"UPS cable           :", "UPS ケーブル        :"};
Label stdframe_label09 = {"UPS max. load (VA)  :", "UPS 最大負荷 (VA)   :"};
Label stdframe_label10 = {"UPS act. load (VA)  :", "UPS 現在負荷 (VA)   :"};
Label stdframe_label11 = {"UPS maxholdtime  (m):", "UPS 保持時間 (分)   :"};
Label stdframe_label12 = {"UPS rechargetime (h):", "UPS 充電時間 (時間) :"};
Label stdframe_label13 = {"UPS Id              :", "UPS Id              :"};

Label help_location = {"Enter the UPS Server Name for|configuration or use default",
                       "設定に使う UPS サーバ名を入力してください。|既定値のままでもかまいません。"};
Label help_device = {"Enter COM port and mode settings for UPS|communication e.g. /dev/tty00:2400,n,8,1",
                     "UPS と通信する COM ポートと通信条件を入力してください。|例: /dev/tty00:2400,n,8,1"};
Label help_logging_rate = {"Enter time interval for write|back KAVLON data to harddisk",
                           "KAVLON のデータをハードディスクに書き込む|間隔を入力してください。"};
Label help_log_limit = {"Enter the maximum|Logfile Size (Megabytes).",
                        "ログファイルの最大容量を|入力してください (メガバイト)。"};
Label help_caution = {"Enter the temperature for temperature caution.| ", "温度注意とする温度を入力してください。| "};
Label help_warning = {"Enter the temperature for temperature warning.| ", "温度警告とする温度を入力してください。| "};
Label help_model = {"Choose UPS model|from list", "UPS 機種名を|一覧から選択してください。"};
Label help_cable = {"", ""};
Label help_power = {"Do not change,|if You choose the UPS model from the list",
                    "UPS 機種名を一覧から選択した場合は、|変更しないでください。"};
Label help_load = {"Enter the actual load (VA)|of Your UPS, or use default",
                   "UPS の現在負荷 (VA) を入力してください。|既定値のままでもかまいません。"};
Label help_hold_minutes = {
    "Enter the maximum holdtime (min)|at 100% load of Your UPS,|or use defaults.",
    "負荷 100% での UPS の最大保持時間 (分) を|入力してください。|既定値のままでもかまいません。"};
Label help_recharge_hours = {"Enter the rechargetime (h) to|100% UPS battery capacity, or use default",
                             "バッテリを 100% まで充電する時間を|入力してください。既定値のままでもかまいません。"};

Label customframe_label01 = {"Password                       :", "パスワード                     :"};
Label customframe_label02 = {"Check UPS interval  (s)        :", "UPS 監視間隔 (秒)              :"};
Label customframe_label03 = {"Enable shutdown (yes/no)       :", "シャットダウン許可 (yes/no)    :"};
Label customframe_label04 = {"System downtime     (m)        :", "シャットダウン所要時間 (分)    :"};
Label customframe_label05 = {"Shutdown UPS (yes/no)          :", "UPS シャットダウン (yes/no)    :"};
Label customframe_label06 = {"UPS shutdown delay  (m)        :", "UPS シャットダウン遅延 (分)    :"};
Label customframe_label07 = {"Enable UPS restore (yes/no)    :", "復電時の UPS 出力再開 (yes/no) :"};
Label customframe_label08 = {"Enable fixed shutdown (yes/no) :", "固定時間シャットダウン (yes/no):"};
Label customframe_label09 = {"Fixed shutdown delay (m)       :", "シャットダウン固定時間 (分)    :"};

Label help_password = {"Enter Your password for Windows kavmon| ",
                       "Windows 版 kavmon のパスワードを入力してください。| "};
Label help_check_rate = {"Enter the UPS polling rate (s),|or use default",
                         "UPS の監視間隔 (秒) を入力してください。|既定値のままでもかまいません。"};
Label help_shutdown = {"Default is enabled.|If disabled, no server shutdown|will be initiated",
                       "既定値は yes です。|no の場合、サーバのシャットダウンは|行われません。"};
Label help_shutdown_minutes = {"Enter the time, Your systems|needs for a regular shutdown",
                               "システムの正常なシャットダウンに|必要な時間を入力してください。"};
Label help_ups_shutdown = {"Enter YES for a shutdown of|Your UPS after the system has halted",
                           "システムの停止後に UPS もシャットダウンする場合は、|yes を選択してください。"};
Label help_ups_shutdown_delay = {
    "Time delay of UPS shutdown|after system shutdown|Only for UPS,|supporting this feature",
    "システムのシャットダウンから|UPS のシャットダウンまでの遅延時間です。|この機能に対応した|UPS でのみ有効です。"};
Label help_ups_restart = {"YES or NO of the UPS output restart when power is restored is set.| ",
                          "復電時に UPS の出力を再開するかどうかを yes か no で選択してください。| "};
Label help_fixed_shutdown = {"If enabled shutdown will be initiated|always after fixed minutes on battery",
                             "yes の場合、バックアップ運転が固定時間続いた後、|必ずシャットダウンを開始します。"};
Label help_fixed_down_time = {"Time to shutdown after m minutes|on battery",
                              "バックアップ運転の開始から|シャットダウンまでの時間 (分) です。"};

Label pathframe_label01 = {"Path for textfile:", "テキストログのパス:"};
Label pathframe_label02 = {"Path for datafile:", "データログのパス:"};
Label pathframe_label03 = {"Enable (yes/no):", "記録 (yes/no):"};
Label pathframe_label04 = {"Logfile max. Size [kB]:", "データログ容量 [kB]   :"};

Label help_log_file = {"Enter path for the|KAVLON text logfile, or use default",
                       "KAVLON のテキストログのパスを入力してください。|既定値のままでもかまいません。"};
Label help_data_log_file = {"Enter path for the|KAVLON data logfile, or use default",
                            "KAVLON のデータログのパスを入力してください。|既定値のままでもかまいません。"};
Label help_data_logging = {"Enter YES if data log|should be saved to file",
                           "データログをファイルに記録する場合は、|yes を選択してください。"};
Label help_data_log_size = {"Enter maximum size in KB for|KAVLON data logfile, or use default",
                            "KAVLON のデータログの最大容量 (kB) を|入力してください。既定値のままでもかまいません。"};

Label specialframe_label01 = {"Enable job 1 (y/n):", "ジョブ 1 (y/n)    :"};
Label specialframe_label02 = {"Enable job 2 (y/n):", "ジョブ 2 (y/n)    :"};
Label specialframe_label03 = {"Enable job 3 (y/n):", "ジョブ 3 (y/n)    :"};
Label specialframe_label04 = {"Delay (m)        :", "残り時間 (分)    :"};
Label specialframe_label05 = {"Path of program   :", "プログラムのパス  :"};

Label help_extra_switch = {"Enable extra job for execution|at a certain remaining time",
                           "残り時間が指定値になったときに|追加ジョブを実行します。"};
Label help_extra_time = {"Execute extra job at|specified remaining time",
                         "追加ジョブを実行する|残り時間を指定します。"};
Label help_extra_path = {"Enter path for extra job|e.g. /usr/ups/ups_job",
                         "追加ジョブのプログラムのパスを入力してください。|例: /usr/ups/ups_job"};

Label mailframe_label01 = {"Mail Subject         :", "メールの件名         :"};
Label mailframe_label02 = {"Use signature file   :", "署名ファイルの使用   :"};
Label mailframe_label03 = {"Signature file       :", "署名ファイル         :"};
Label mailframe_label04 = {"Sender Email Address :", "差出人メールアドレス :"};
Label mailframe_label05 = {"SMTP server name     :", "SMTP サーバ名        :"};
Label mailframe_label06 = {"Enable SMTP client   :", "SMTP 送信の使用      :"};
Label mailframe_label07 = {"User                 :", "ユーザ名             :"};
Label mailframe_label08 = {"Password             :", "パスワード           :"};
Label mailframe_label09 = {"SMTP Authentification (optional)", "SMTP 認証 (省略可)"};

Label help_mail_subject = {"Enter a String to be used as the `Subject' field in mail send by kavlon.| ",
                           "KAVLON が送信するメールの件名 (Subject) を入力してください。| "};
Label help_use_signature = {"Enter YES or NO.|If enabled you have to enter a signature file.| ",
                            "yes か no を選択してください。|yes の場合、署名ファイルが必要です。| "};
Label help_signature_file = {"Enter the filename of your signature file| ",
                             "署名ファイルの名前です。この名前は変更できません。| "};
Label help_sender = {"Enter an email address to appear in the `From' field of the mailheader.| ",
                     "メールの差出人 (From) に表示するメールアドレスを入力してください。| "};
Label help_smtp_host = {"Enter the name of the mailserver the mail should be delivered to.| ",
                        "メールを送信する SMTP サーバ名を入力してください。| "};
Label help_smtp_enabled = {
    "Enter YES or NO. | If enabled mail will be send directly to remote hosts via SMTP | if disabled outgoing mail "
    "will be handled by the systems MTA (sendmail)| note: The following options can only be used if this one is "
    "enabled.| ",
    "yes か no を選択してください。| yes の場合、メールを SMTP で直接送信します。| "
    "no の場合、システムの MTA (sendmail) が送信します。| 注意: "
    "以下の項目は yes の場合だけ使用できます。| "};
Label help_smtp_user = {"Enter your account name for SMTP authentication if necessary.| ",
                        "必要な場合は、SMTP 認証のユーザ名を入力してください。| "};
Label help_smtp_password = {"Enter your password for SMTP authentication if necessary.| ",
                            "必要な場合は、SMTP 認証のパスワードを入力してください。| "};

Label help_missing = {"No help available|on this item", "この項目の|ヘルプはありません。"};

Label std_help_title = {"Standard settings help", "ヘルプ"};
Label custom_help_title = {"Custom settings help", "ヘルプ"};
Label job_help_title = {"Job settings help", "ヘルプ"};
Label path_help_title = {"Path settings help", "ヘルプ"};
// kept: the mail mask's help bears the event list's heading
Label mail_help_title = {"Select the UPS-Event wherein you want to trigger some actions", "ヘルプ"};
Label other_help_title = {"Help text", "ヘルプテキスト"};

Label fault_bracket_label = {"This value can not be read back: '[' hides what follows",
                             "この値は読み戻せません: '[' より後の設定が読み込まれなくなります。"};
Label fault_blank_label = {"This value can not be read back: blanks at its ends are cut",
                           "この値は読み戻せません: 両端の空白が失われます。"};
Label fault_empty_label = {"An empty value can not be read back: the default comes instead",
                           "空の値は読み戻せません: 既定値に戻ります。"};
Label fault_cut_label = {"This value can not be read back: a part of it is lost",
                         "この値は読み戻せません: 一部が失われます。"};
Label fault_section_label = {"An empty value can not be read back, and what follows it is not saved",
                             "空の値は読み戻せません。これより後の設定も保存されません。"};
