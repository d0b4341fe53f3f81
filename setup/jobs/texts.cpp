#include "setup/jobs/texts.h"

// clang-format off
Label func_list[kFunctionCount] = {
    {"SHUTDOWN|Send a Shutdown UPS Signal"
     "|This will send a Shutdown signal to UPS timer, executed with delay."
     "|Shutdown System/ UPS in #1 sec.|1",
     "SHUTDOWN|UPS へシャットダウン信号を送信"
     "|シャットダウン信号を UPS のタイマへ送信し、遅延時間後に実行します。"
     "|#1 秒後にシステム/UPS をシャットダウン|1"},
    {"MESSAGE|Send Messagebox with text|Send text to specified network user|Message to #1|2",
     "MESSAGE|メッセージボックスで通知|指定したネットワークユーザへメッセージを送信します。|#1 へメッセージを送信|2"},
    {R"(EXECUTE("send")|Send NIMBRO signal to remote client)"
     "|Send NIMBRO shutdown signal to remote client #1|Send a NIMBRO signal to #1|2",
     R"(EXECUTE("send")|リモートクライアントへ NIMBRO 信号を送信)"
     "|リモートクライアント #1 へ NIMBRO シャットダウン信号を送信します。|#1 へ NIMBRO 信号を送信|2"},
    {R"(EXECUTEH("sendvik.exe","-ini","upsext.cfg","-ofi","upsext.cfg","-s","kavlon service","-t"))"
     "|send eMail|send eMail|send eMail to #1|6",
     R"(EXECUTEH("sendvik.exe","-ini","upsext.cfg","-ofi","upsext.cfg","-s","kavlon service","-t"))"
     "|メールを送信|メールを送信します。|#1 へメールを送信|6"},
    {R"(EXECUTE("alarm.bat")|Start Alarm Beeper with Messagebox)"
     "|Starts Alarmbeeper and sends a messagebox to local computer| #1|1",
     R"(EXECUTE("alarm.bat")|アラームブザーとメッセージボックスで通知)"
     "|ブザーを鳴らし、このコンピュータにメッセージボックスを表示します。| #1|1"},
    {"EXECUTE|Execute Program|Execute a Program or Batch-File on this computer|#1|2",
     "EXECUTE|プログラムを実行|このコンピュータでプログラムまたはバッチファイルを実行します。|#1|2"},
    {"LOGMSG|Write to Log-File|Write Text to your KAVLON Log-File|Log Event|1",
     "LOGMSG|ログファイルへ記録|KAVLON のログファイルへメッセージを記録します。|ログファイルへ記録|1"},
    {"MESSAGEID|Send default message IDs from file messages.dat"
     "|Sends default messages out of file messages.dat to specified users|Sends the messageid #2|2",
     "MESSAGEID|messages.dat の定型メッセージを送信"
     "|messages.dat の定型メッセージを指定したユーザへ送信します。|定型メッセージ #2 を送信|2"},
    {"EVENTLOG|Write to Syslog|Write messages to syslog service| #1|3",
     "EVENTLOG|syslog へ記録|syslog サービスへメッセージを記録します。| #1|3"},
};

Label funcpar_list[kFunctionCount][kParameterSlots] = {
    {  // SHUTDOWN
        {"DELAY|STRING|Enter Delay for shutdown"
         "|Example: 300 to shutdown UPS 300 sec. after shutdown process has begun",
         "遅延時間|STRING|シャットダウンの遅延時間 (秒) を入力してください。"
         "|例: 300 (シャットダウン開始から 300 秒後に UPS をシャットダウン)"},
        {"", ""}, {"", ""}, {"", ""}, {"", ""}, {"", ""}, {"", ""},
    },
    {  // MESSAGE
        {R"(USER|STRING|Enter username of recipient, eg."username", or|"*", "/domain:*" or "local".)",
         R"(宛先|STRING|宛先のユーザ名を入力してください。例: "username"|"*"、"/domain:*"、"local" も指定できます。)"},
        {"TEXT|STRING|Enter the text to be sent|Example: General Fault on UPS xxx",
         "本文|STRING|送信する本文を入力してください。|例: UPS xxx で異常が発生しました"},
        {"", ""}, {"", ""}, {"", ""}, {"", ""}, {"", ""},
    },
    {  // EXECUTE("send")
        {"ADDRESS|STRING|Enter the NIMBRO client IP adress or hostname you want to send the signal"
         "|Example: 192.168.0.10 or <hostname>."
         "|If you want to send several NIMBRO calls, add another EVENT Job to the list.",
         "アドレス|STRING|NIMBRO クライアントの IP アドレスかホスト名を入力してください。"
         "|例: 192.168.0.10 または <ホスト名>"
         "|複数の NIMBRO 信号を送信する場合は、ジョブを一覧に追加してください。"},
        {"PORT|STRING|Enter portadress of NIMBRO client - use 6003 for default."
         "|Example: 6003 or the port adress your NIMBRO remote client is listening.",
         "ポート|STRING|NIMBRO クライアントのポート番号を入力してください (既定値 6003)。"
         "|例: 6003 または NIMBRO クライアントが待ち受けるポート番号"},
        {"", ""}, {"", ""}, {"", ""}, {"", ""}, {"", ""},
    },
    {  // EXECUTEH
        {"ADDRESS|STRING|Enter the eMailadress of the recipient of the message|Example: admin@example.com",
         "アドレス|STRING|宛先のメールアドレスを入力してください。|例: admin@example.com"},
        {"TEXT|STRING|Enter the text to be sent|Example: General Fault on UPS xxx",
         "本文|STRING|送信する本文を入力してください。|例: UPS xxx で異常が発生しました"},
        {"DLOG|STRING|Attach data log?| ", "DLOG|STRING|データログを添付しますか?| "},
        {"TLOG|STRING|Attach text log?| ", "TLOG|STRING|テキストログを添付しますか?| "},
        {"TREC|STRING|Attach trouble record?| ", "TREC|STRING|障害記録を添付しますか?| "},
        {"OINF|STRING|Attach operation info record?| ", "OINF|STRING|運転情報記録を添付しますか?| "},
        {"", ""},
    },
    {  // EXECUTE("alarm.bat")
        {R"(TEXT|STRING|Enter Text to display in the messagebox of the Beeper|Eg. "UPS Alarm detected !")",
         R"(本文|STRING|ブザーのメッセージボックスに表示する本文を入力してください。|例: "UPS アラームが発生しました")"},
        {"", ""}, {"", ""}, {"", ""}, {"", ""}, {"", ""}, {"", ""},
    },
    {  // EXECUTE
        {"PROGRAM|STRING|Enter the Program with full Path|Example: /usr/ups/nimbro.exe",
         "PROGRAM|STRING|プログラムをフルパスで入力してください。|例: /usr/ups/nimbro.exe"},
        {R"(PARAMETER|STRING|Enter the argument for this EXE|Example: -s" "-a" "192.168.0.10")",
         R"(PARAMETER|STRING|プログラムの引数を入力してください。|例: -s" "-a" "192.168.0.10")"},
        {"", ""}, {"", ""}, {"", ""}, {"", ""}, {"", ""},
    },
    {  // LOGMSG
        {"TEXT|STRING|Enter the text to be logged to your logfile.txt|Example: KAVLON has detected Battery low!",
         "本文|STRING|logfile.txt に記録する本文を入力してください。|例: KAVLON がバッテリ電圧低下を検出しました"},
        {"", ""}, {"", ""}, {"", ""}, {"", ""}, {"", ""}, {"", ""},
    },
    {  // MESSAGEID
        {R"(USER|STRING|Enter username of recipient, eg."username", or )"
         R"(| use "*" for all users on this computer, "local" for local computer only.)",
         R"(宛先|STRING|宛先のユーザ名を入力してください。例: "username")"
         R"(|このコンピュータの全ユーザ: "*"、このコンピュータのみ: "local")"},
        {"ID|ULONG|Enter the textnumber to be sent"
         "|Example: 601 = Use Powerfail default message out of message.dat file.",
         "番号|ULONG|送信するメッセージの番号を入力してください。"
         "|例: 601 = messages.dat の停電の定型メッセージ"},
        {"", ""}, {"", ""}, {"", ""}, {"", ""}, {"", ""},
    },
    {  // EVENTLOG
        {"TYPE|STRING|Enter the priority for this syslog message.|Example:information, warning,  error.",
         "優先度|STRING|syslog メッセージの優先度を選択してください。|例: information, warning, error"},
        {"EVENT ID|LONG|Enter the event EVENTVIEWER ID number.|Use event IDs from 100 to 200 only. ",
         "識別番号|LONG|イベントビューアの識別番号を入力してください。|100 から 200 までの番号を使用してください。"},
        {"TEXT|STRING|Enter the text for this syslog message.| ",
         "本文|STRING|syslog メッセージの本文を入力してください。| "},
        {"", ""}, {"", ""}, {"", ""}, {"", ""},
    },
};

const EventTexts eventlist[kEventCount + 1] = {
    // 0
    {{"UPS Alarm - Powerfail has occurred !", "UPS アラーム - 停電が発生しました"},
     {R"(MESSAGEID("local",601)O;MESSAGEID("local",600)P60;LOGMSG("UPS-Status:Backup running")O;)"
      R"(EVENTLOG("Warning",100,"UPS: Powerfail detected")O;)",
      R"(MESSAGEID("local",601)O;MESSAGEID("local",600)P60;LOGMSG("UPS 状態: バックアップ運転")O;)"
      R"(EVENTLOG("warning",100,"UPS: 停電を検出しました")O;)"}},
    {{"UPS Power has been restored", "UPS が復電を検出しました"},
     {R"(MESSAGEID("local",602)O;LOGMSG("UPS Power restored - Shutdown canceled")O;)"
      R"(EVENTLOG("Information",100,"UPS: Power restored")O;)",
      R"(MESSAGEID("local",602)O;LOGMSG("UPS 復電 - シャットダウンを取り消しました")O;)"
      R"(EVENTLOG("information",100,"UPS: 復電しました")O;)"}},
    {{"UPS/System shutdown imminent ...", "まもなく UPS/システムをシャットダウンします"},
     {R"(MESSAGEID("local",603)O;LOGMSG("shutdown imminent #SHUTDOWNTIME #RESTORETIME")O;)"
      R"(EVENTLOG("Warning",100,"shutdown imminent #SHUTDOWNTIME #RESTORETIME")O;SHUTDOWN("default")O;)",
      R"(MESSAGEID("local",603)O;LOGMSG("まもなくシャットダウンします #SHUTDOWNTIME #RESTORETIME")O;)"
      R"(EVENTLOG("warning",100,"まもなくシャットダウンします #SHUTDOWNTIME #RESTORETIME")O;SHUTDOWN("default")O;)"}},
    {{"KAVLON has started sucessfully", "KAVLON が正常に起動しました"},
     {R"(LOGMSG("Connected to UPS.")O;)",
      R"(LOGMSG("UPS に接続しました")O;)"}},
    {{"UPS RS-232 Communication lost", "UPS との RS-232 通信が途絶えました"},
     {R"(MESSAGEID("local",604)O;LOGMSG("Disconnected from UPS")O;)"
      R"(EVENTLOG("Warning",100,"Serial communication lost")O;)",
      R"(MESSAGEID("local",604)O;LOGMSG("UPS との接続が切れました")O;)"
      R"(EVENTLOG("warning",100,"シリアル通信が途絶えました")O;)"}},
    // 5
    {{"UPS RS-232 Communication restored", "UPS との RS-232 通信が復旧しました"},
     {R"(MESSAGEID("local",605)O;LOGMSG("Connected to UPS")O;)"
      R"(EVENTLOG("information",100,"Serial communication established")O;)",
      R"(MESSAGEID("local",605)O;LOGMSG("UPS に接続しました")O;)"
      R"(EVENTLOG("information",100,"シリアル通信が復旧しました")O;)"}},
    {{"UPS in sleep mode", "UPS スリープモード"},
     {R"(MESSAGE("local","UPS in sleep mode")O;LOGMSG("UPS-Status:Sleep mode")O;)"
      R"(EVENTLOG("information",100,"UPS in sleep mode")O;)",
      R"(MESSAGE("local","UPS はスリープモードです")O;LOGMSG("UPS 状態: スリープモード")O;)"
      R"(EVENTLOG("information",100,"UPS: スリープモード")O;)"}},
    {{"Battery low", "バッテリ電圧低下"},
     {R"(MESSAGEID("local",610)O;LOGMSG("UPS-Status:Battery low")O;)"
      R"(EVENTLOG("Warning",100,"UPS: battery low condition")O;)",
      R"(MESSAGEID("local",610)O;LOGMSG("UPS 状態: バッテリ電圧低下")O;)"
      R"(EVENTLOG("warning",100,"UPS: バッテリ電圧低下")O;)"}},
    {{"Shutdown delay", "シャットダウン遅延"},
     {R"(MESSAGE("local","UPS Status: Shutdown delay")O;LOGMSG("UPS-Status:Shutdown delay")O;)"
      R"(EVENTLOG("warning",100,"Shutdown delay")O;)",
      R"(MESSAGE("local","UPS 状態: シャットダウン遅延")O;LOGMSG("UPS 状態: シャットダウン遅延")O;)"
      R"(EVENTLOG("warning",100,"シャットダウン遅延")O;)"}},
    {{"Overload", "過負荷"},
     {R"(MESSAGEID("local",607)P30;LOGMSG("UPS-Status:Overload")P30;)"
      R"(EVENTLOG("warning",100,"UPS: Overload")O;)",
      R"(MESSAGEID("local",607)P30;LOGMSG("UPS 状態: 過負荷")P30;)"
      R"(EVENTLOG("warning",100,"UPS: 過負荷")O;)"}},
    // 10
    {{"Input failure at UPS start", "UPS 起動時の入力異常"},
     {R"(MESSAGE("local","Input failure at UPS start")O;LOGMSG("UPS-Status:Input failure at start")O;)"
      R"(EVENTLOG("warning",100,"UPS: Input failure at start")O;)",
      R"(MESSAGE("local","UPS 起動時の入力異常")O;LOGMSG("UPS 状態: 起動時の入力異常")O;)"
      R"(EVENTLOG("warning",100,"UPS: 起動時の入力異常")O;)"}},
    {{"Battery test", "バッテリテスト"},
     {R"(MESSAGE("local","Battery test")O;LOGMSG("UPS-Status:Battery test")O;)"
      R"(EVENTLOG("information",100,"UPS: Battery test")O;)",
      R"(MESSAGE("local","バッテリテスト")O;LOGMSG("UPS 状態: バッテリテスト")O;)"
      R"(EVENTLOG("information",100,"UPS: バッテリテスト")O;)"}},
    {{"Thermal failure", "温度異常"},
     {R"(MESSAGE("local","Thermal failure")O;LOGMSG("UPS-Status:Thermal failure")O;)"
      R"(EVENTLOG("warning",100,"UPS: Thermal failure")O;)",
      R"(MESSAGE("local","温度異常")O;LOGMSG("UPS 状態: 温度異常")O;)"
      R"(EVENTLOG("warning",100,"UPS: 温度異常")O;)"}},
    {{"Output voltage failure", "出力電圧異常"},
     {R"(MESSAGE("local","Output voltage failure")O;LOGMSG("UPS-Status:Output voltage failure")O;)"
      R"(EVENTLOG("warning",100,"UPS: Output voltage failure")O;)",
      R"(MESSAGE("local","出力電圧異常")O;LOGMSG("UPS 状態: 出力電圧異常")O;)"
      R"(EVENTLOG("warning",100,"UPS: 出力電圧異常")O;)"}},
    {{"Charge voltage failure", "充電電圧異常"},
     {R"(MESSAGE("local","Charge voltage failure")O;LOGMSG("UPS-Status:Charge voltage failure")O;)"
      R"(EVENTLOG("warning",100,"Charge voltage failure")O;)",
      R"(MESSAGE("local","充電電圧異常")O;LOGMSG("UPS 状態: 充電電圧異常")O;)"
      R"(EVENTLOG("warning",100,"充電電圧異常")O;)"}},
    // 15
    {{"DC voltage failure", "直流電圧異常"},
     {R"(MESSAGE("local","DC voltage failure")O;LOGMSG("UPS-Status:DC voltage failure")O;)"
      R"(EVENTLOG("warning",100,"UPS: DC voltage failure")O;)",
      R"(MESSAGE("local","直流電圧異常")O;LOGMSG("UPS 状態: 直流電圧異常")O;)"
      R"(EVENTLOG("warning",100,"UPS: 直流電圧異常")O;)"}},
    {{"Chilled fan failure", "冷却ファン異常"},
     {R"(MESSAGE("local","Chilled fan failure")O;LOGMSG("UPS-Status:Chilled fan failure")O;)"
      R"(EVENTLOG("warning",100,"UPS: Chilled fan failure")O;)",
      R"(MESSAGE("local","冷却ファン異常")O;LOGMSG("UPS 状態: 冷却ファン異常")O;)"
      R"(EVENTLOG("warning",100,"UPS: 冷却ファン異常")O;)"}},
    {{"Battery test NG", "バッテリテスト異常"},
     {R"(MESSAGE("local","Battery test NG")O;LOGMSG("UPS-Status:Battery test NG")O;)"
      R"(EVENTLOG("warning",100,"UPS: Battery test NG")O;)",
      R"(MESSAGE("local","バッテリテスト異常")O;LOGMSG("UPS 状態: バッテリテスト異常")O;)"
      R"(EVENTLOG("warning",100,"UPS: バッテリテスト異常")O;)"}},
    {{"Powerfail and Battery low", "停電およびバッテリ電圧低下"},
     {R"(MESSAGEID("local",611)O;LOGMSG("UPS-Status:Powerfail and Battery low")O;)"
      R"(EVENTLOG("warning",100,"UPS: Powerfail and Battery low")O;)",
      R"(MESSAGEID("local",611)O;LOGMSG("UPS 状態: 停電およびバッテリ電圧低下")O;)"
      R"(EVENTLOG("warning",100,"UPS: 停電およびバッテリ電圧低下")O;SHUTDOWN("default")T15;)"}},
    {{"Battery test OK", "バッテリテスト正常"},
     {R"(LOGMSG("UPS-Status:Battery test OK")O;EVENTLOG("warning",100,"UPS: Battery test OK")O;)",
      R"(LOGMSG("UPS 状態: バッテリテスト正常")O;EVENTLOG("information",100,"UPS: バッテリテスト正常")O;)"}},
    // 20
    {{"Shutdown with the scheduler", "スケジューラによるシャットダウン"},
     {R"(MESSAGE("local","shutdown start after 5 minutes")OX5;MESSAGE("local","shutdown start")OX0;)",
      R"(MESSAGE("local","5 分後にシャットダウンを開始します")OX5;)"
      R"(MESSAGE("local","シャットダウンを開始します")OX0;)"}},
    {{"Bypass mode", "バイパス運転"},
     {R"(MESSAGEID("local",611)O;LOGMSG("UPS status: bypass mode")O;)"
      R"(EVENTLOG("warning",100,"UPS status: bypass mode")O;)",
      R"(MESSAGEID("local",611)O;LOGMSG("UPS 状態: バイパス運転")O;)"
      R"(EVENTLOG("warning",100,"UPS 状態: バイパス運転")O;)"}},
    {{"Temp Caution", "温度注意"},
     {R"(MESSAGE("local","Temp Caution")O;LOGMSG("UPS Temp Caution")O;)"
      R"(EVENTLOG("warning",100,"UPS Temp Caution")O;)",
      R"(MESSAGE("local","温度注意")O;LOGMSG("UPS 温度注意")O;)"
      R"(EVENTLOG("warning",100,"UPS 温度注意")O;)"}},
    {{"Temp Warning", "温度警告"},
     {R"(MESSAGE("local","Temp Warning")O;LOGMSG("UPS Temp Warning")O;)"
      R"(EVENTLOG("warning",100,"UPS Temp Warning")O;)",
      R"(MESSAGE("local","温度警告")O;LOGMSG("UPS 温度警告")O;)"
      R"(EVENTLOG("warning",100,"UPS 温度警告")O;)"}},
    {{"Battery Life Warning", "バッテリ寿命警告"},
     {R"(MESSAGE("local","Battery Life Warning")O;LOGMSG("UPS Battery Life Warning")O;)"
      R"(EVENTLOG("warning",100,"UPS Battery Life Warning")O;)",
      R"(MESSAGE("local","バッテリ寿命警告")O;LOGMSG("UPS バッテリ寿命警告")O;)"
      R"(EVENTLOG("warning",100,"UPS バッテリ寿命警告")O;)"}},
    {{"", ""}, {"", ""}},
};
// clang-format on

Label funcframe_label02[kTimingCount] = {
    {"Once     ", "一回のみ "}, {"Always   ", "毎回実行 "}, {"Periodic ", "一定間隔 "},
    {"Timed    ", "遅延実行 "}, {"Repeated ", "遅延反復 "},
};
Label funcframe_label06 = {"Do before", "事前実行 "};
Label funcframe_label07[kSyslogLevelCount] = {
    {"emergency", "emergency"}, {"alert", "alert"},   {"critical", "critical"},       {"error", "error"},
    {"warning", "warning"},     {"notice", "notice"}, {"information", "information"},
};
