      /
      *
      *     THIS PROCEDURE INITS THE FOLLOWING FORM:
      *     ****************************************
      *     NAME   : ORDER
      *     NUMBER : 42
      *
            MOVE    42  TO S42-NUMBER.
            MOVE 'DPS00042' TO S42-NAME.
            MOVE    50  TO S42-FCA-LENGTH.
            MOVE    10  TO S42-FCA-COUNT.
            MOVE    24  TO S42-NUMBER-ROWS.
            MOVE    80  TO S42-NUMBER-COLS.
            MOVE    26  TO S42-WSDATA-LENGTH.
            MOVE     0  TO S42-SOE-YCO.
            MOVE     0  TO S42-SOE-XCO.
            MOVE     0  TO S42-FUNCTIONKEY.
            MOVE    10  TO S42-OUT-YCO.
            MOVE     3  TO S42-OUT-XCO.
            MOVE     4  TO S42-OUT-FID.
            MOVE     0  TO S42-IN-YCO.
            MOVE     0  TO S42-IN-XCO.
            MOVE     0  TO S42-IN-FID.
            MOVE 'V'  TO S42-VALID.
            MOVE 'D'  TO S42-DYNAMIC.
            MOVE 'E'  TO S42-BACKGROUND.
            MOVE 'W'  TO S42-FOREGROUND.
            MOVE 'N'  TO S42-FONT.
            MOVE 'Y'  TO S42-CNUM-VALIDATE.
            MOVE 'H'  TO S42-INTENSITY.
            MOVE 'R'  TO S42-HIGHLIGHT.
            MOVE 'U'  TO S42-EMPHASIS.
      *
           MOVE      0 TO S42-CUST-STAT.
           MOVE      1 TO S42-CUST-TYPE.
           MOVE      2 TO S42-CUST-YCO.
           MOVE     10 TO S42-CUST-XCO.
           MOVE      6 TO S42-CUST-CHAR.
           MOVE      1 TO S42-CUST-FID.
           MOVE    'V' TO S42-CUST-VAL.
           MOVE    'U' TO S42-CUST-DYN.
           MOVE    'E' TO S42-CUST-BACK.
           MOVE    'W' TO S42-CUST-FORE.
           MOVE    'N' TO S42-CUST-INT.
           MOVE    'N' TO S42-CUST-HIGH.
           MOVE    'N' TO S42-CUST-FONT.
           MOVE    'N' TO S42-CUST-EMPH.
           MOVE      0 TO S42-BOX-STAT.
           MOVE      4 TO S42-BOX-TYPE.
           MOVE      4 TO S42-BOX-YCO.
           MOVE      5 TO S42-BOX-XCO.
           MOVE     30 TO S42-BOX-CHAR.
           MOVE      2 TO S42-BOX-FID.
           MOVE    'V' TO S42-BOX-VAL.
           MOVE    'O' TO S42-BOX-DYN.
           MOVE    'E' TO S42-BOX-BACK.
           MOVE    'W' TO S42-BOX-FORE.
           MOVE    'N' TO S42-BOX-INT.
           MOVE    'N' TO S42-BOX-HIGH.
           MOVE    'N' TO S42-BOX-FONT.
           MOVE    'N' TO S42-BOX-EMPH.
           MOVE      0 TO S42-NOTE-STAT.
           MOVE      1 TO S42-NOTE-TYPE.
           MOVE      5 TO S42-NOTE-YCO.
           MOVE      7 TO S42-NOTE-XCO.
           MOVE     60 TO S42-NOTE-CHAR.
           MOVE      3 TO S42-NOTE-FID.
           MOVE    'V' TO S42-NOTE-VAL.
           MOVE    'U' TO S42-NOTE-DYN.
           MOVE    'E' TO S42-NOTE-BACK.
           MOVE    'W' TO S42-NOTE-FORE.
           MOVE    'N' TO S42-NOTE-INT.
           MOVE    'N' TO S42-NOTE-HIGH.
           MOVE    'N' TO S42-NOTE-FONT.
           MOVE    'N' TO S42-NOTE-EMPH.
           MOVE    ' ' TO S42-CUST.
           MOVE 'ABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJ'
                TO S42-NOTE.
