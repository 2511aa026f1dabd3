~Version
 VERS.   1.2 :
 WRAP.   NO  :
~A  DEPTH     DT
1670.000   123.450
1669.875   123.450
