This is a plain text file, not a BoreAnalyst document.
