#error "<xlsxwriter.h> belongs to system: the logic writes sheets through contract/system"
