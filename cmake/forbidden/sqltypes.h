#error "<sqltypes.h> belongs to data: the logic speaks to databases through contract/data"
