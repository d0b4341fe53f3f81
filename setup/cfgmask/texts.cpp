#include "setup/cfgmask/texts.h"

Label model_list_title = {" Select UPS modelname ", " UPS 機種名の選択 "};
Label model_missing_label = {"You must select|a valid UPS modelname !", "有効な UPS 機種名を|選択してください。"};
Label shutdown_list_title = {" enable shutdown ", " シャットダウン許可 "};
Label ups_shutdown_list_title = {" enable UPS shutdown ", " UPS シャットダウン "};
Label ups_restore_list_title = {" enable UPS restore ", " 復電時の UPS 出力再開 "};
Label fixed_shutdown_list_title = {" enable fixed shutdown ", " 固定時間シャットダウン "};
Label logging_list_title = {" enable logging ", " データログの記録 "};
Label extra_job_list_title = {" enable extra job ", " 追加ジョブ "};
