#include "spectra/RefFiles.h"

#include "spectra/ARefFile.h"

void RefFiles::append(ARefFile *row)
{
    m_rows.append(row);
    connect(row, &ARefFile::changedUse, this, &RefFiles::changedUse);
    connect(row, &ARefFile::selectedFile, this, &RefFiles::selectedFile);
}
