#include "setup/forms/texts.h"

Label list_hint_label = {"%c ENTER for list!", "%c ENTER で一覧"};
Label value_error_title = {"Value out of range", "値が範囲外です"};
Label value_error_label = {"Value must be in range:| %ld <= value <= %ld",
                           "値は次の範囲で入力してください:| %ld <= 値 <= %ld"};
