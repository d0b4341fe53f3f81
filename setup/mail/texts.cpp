#include "setup/mail/texts.h"

Label mailframe_label10 = {"Enable SMTP client ?  ", " SMTP で送信しますか? "};
Label mailframe_label11 = {"Use signature file ?  ", " 署名ファイルを使用しますか? "};
