#include "setup/mail/texts.h"

Label mailframe_label01 = {"Mail Subject         :", "メールの件名         :"};
Label mailframe_label02 = {"Use signature file   :", "署名ファイルの使用   :"};
Label mailframe_label03 = {"Signature file       :", "署名ファイル         :"};
Label mailframe_label04 = {"Sender Email Address :", "差出人メールアドレス :"};
Label mailframe_label05 = {"SMTP server name     :", "SMTP サーバ名        :"};
Label mailframe_label06 = {"Enable SMTP client   :", "SMTP 送信の使用      :"};
Label mailframe_label07 = {"User                 :", "ユーザ名             :"};
Label mailframe_label08 = {"Password             :", "パスワード           :"};
Label mailframe_label09 = {"SMTP Authentification (optional)", "SMTP 認証 (省略可)"};
Label mailframe_label10 = {"Enable SMTP client ?  ", " SMTP で送信しますか? "};
Label mailframe_label11 = {"Use signature file ?  ", " 署名ファイルを使用しますか? "};
