#!/usr/bin/python3
"""Writes tokens.txt: formulas with the tokens that openpyxl's tokenizer (python3-openpyxl) sees.

A formula stands on a line "=" + formula; its tokens follow, one a line: kind, tab, text. U+2424 stands
for a line feed. Run it in its own folder after changing FORMULAS.
"""
from openpyxl.formula.tokenizer import Tokenizer

FORMULAS = r'''
1
1.
.5
1E+20
1e-3
0.000001
12345678901234567890
1+2
1 + 2
1-2*3/4^5
-1
+-+1
--A1
-2^2
2^-1
-(1+2)*3
50%
50%%
(1+2)%
A1%
A1%+5
"text"
""
""""
"say ""hi"""
"a"&"b"
"a,b;c(d)"&"{1}"
"A1:B2"
TRUE
FALSE
TRUE=FALSE
NOT(TRUE)
TRUE()
#DIV/0!
#N/A
#NULL!+#VALUE!
#REF!*#NAME?
IF(A1=#NUM!,1,2)
A1
$A$1
$A1+A$1
XFD1048576
A1:B2
$A$1:$B$2
$A1:B$2
A:A
$A:$C
A:$C
3:7
$3:$7
SUM(A:A,3:7)
SUM($A:$B $1:$2)
Sheet1!A1
Sheet1!$A$1:$B$2
Sheet1!A:A
Sheet1!3:7
'My sheet'!A1
'My sheet'!$B$2:$C$9
'It''s'!A1+1
'a"b'!A1
'1-2'!A1:A2
'Q1 (old)'!A1
[1]Sheet1!A1
[Book.xlsx]Sheet1!$A$1
'[Book 1.xlsx]Sheet 1'!A1:B2
'C:\data\[Book.xlsx]Sheet1'!A1
[1]!total
Sheet1:Sheet3!A1
SUM(Sheet1:Sheet3!A1:B2)
'Sheet 1:Sheet 3'!A1
[1]Sheet1:Sheet3!A1
Sheet1!A1:Sheet1!B2
A1:INDEX(B1:B9,3)
INDEX(A1:A9,2):B9
SUM(INDEX(A1:A9,2):INDEX(A1:A9,5))
A1:total
Table1[Column]
Table1[[#All],[a]:[b]]
Table1[[#This Row],[x y]]
SUM(Table1[Sales])*2
Table1[#Headers]
DeptSales[[#Headers],[#Data],[% Commission]]
total
total+tax_rate
_private\name
a.b.c
what?
Sheet1!local_name
Grösse*2
Привет+1
日本
x1y
R1C1
A1B
ABCD1
A1048577
LOG10
LOG10(100)
A1(2)
a_1
SUM(1,2)
sum(1;2)
SUM()
NA()
f(,1)
f(1,)
f(,)
f(1,,2)
IF(A1>0,"positive",IF(A1<0,"negative","zero"))
IF(A1="",0,A1)
A1<>B1
A1<=B1
A1>=B1
A1<B1=C1>D1
A1&B1&" "&C1
A1 B1
A1:A3 A2:C2
A1:C3  B2:D4
total tax_rate
(A1:A3) (A2)
SUM(A1:A9 name,3)
INDEX(A1:A9,1) A1:C1
A1 INDEX(A1:A9,1)
A1 +B1
A1+ B1
SUM((A1,B1),C1)
SUM((A1:A3,B1:B3) A2:B2)
AREAS((A1,B1,C1))
(A1,B1)
(A1)
((A1))
( A1 )
SUM( A1 , B1 )
1 +␤2
IF(A1,␤   1,␤   2)
{1}
{1,2,3}
{1;2;3}
{1,2;3,4}
{-1,+2}
{"a","b;c";TRUE,FALSE}
{#N/A,1}
SUM({1,2}*{3;4})
{ 1 , 2 ; 3 , 4 }
ZavMean(A1:A10)
zavmean(a1:a10)
ZavPercentile(Sheet2!$A$1:$A$100,0.25,1)
ZavMean(A1:A10,B1:B10)+ZavMean((A1:A3,B1:B3))
ZavDestack('Stacked data'!A:A,"x")
_xlfn.IFNA(A1,0)
_xlfn._xlws.SORT(A1:A9)
_xll.ZavMean(A1:A3)
_xlfn.STDEV.S(A1:A9)
Book.xlam!MyFunction(A1)
'My Book.xlam'!MyFunction(A1,2)
Sheet1!A1*Sheet2!B2+'Sheet 3'!C3
@A1:A10
@total
@INDEX(A1:A9,2)
SUM(@A1:A3,2)
VLOOKUP(A1,$D$1:$F$99,3,FALSE)
SUMPRODUCT((A1:A9="x")*(B1:B9>0),C1:C9)
SUMIF(A:A,">="&D1,B:B)
TEXT(A1,"0.00;[Red]-0.00")
DATE(2020,1,31)+TIME(1,2,3)
ROUND(1E+3*.5,-2)
1E5+1E-5-1E+5
A1^B1^C1
-A1^2%
2*-3
2--3
"x"="X"
'''


def main():
    with open("tokens.txt", "w", encoding="utf-8", newline="\n") as out:
        for line in FORMULAS.splitlines():
            if not line:
                continue
            out.write(f"={line}\n")
            for token in Tokenizer("=" + line.replace("␤", "\n")).items:
                kind = f"{token.type}-{token.subtype}" if token.subtype else token.type
                text = token.value.replace("\n", "␤")
                out.write(f"{kind}\t{text}\n")


main()
