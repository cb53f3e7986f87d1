#error "<mysql.h> belongs to data: the logic speaks to databases through contract/data"
