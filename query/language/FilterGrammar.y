/* SPDX-FileCopyrightText: 2026 Tematica contributors
   SPDX-License-Identifier: MIT */

/* Grammar of the filter language (docs/filter-language.md). The actions only build nodes; who owns
   them until they have a parent is ParseContext's. */

%code requires {
#include "query/language/ParseContext.h"
}

%code provides {
int tematica_filter_lex(
    TEMATICA_FILTER_STYPE* value, TEMATICA_FILTER_LTYPE* place, query::ParseContext& context);
void tematica_filter_error(
    TEMATICA_FILTER_LTYPE* place, query::ParseContext& context, const char* message);
}

%code {
#define YYINITDEPTH 200
#define YYMAXDEPTH 10000
}

%define api.pure full
%define api.prefix {tematica_filter_}
%define api.token.prefix {TOKEN_}
/* Columns are bytes of the text, counted from 0; a last column is the first byte after. */
%locations
%parse-param { query::ParseContext& context }
%lex-param { query::ParseContext& context }

/* A condition counts as complete only before a token that may follow it. With reductions made
   blindly, "Importo = 1,5" would quietly become Importo = 1. */
%define lr.default-reduction consistent

%union {
    orv::String* text;
    std::int32_t integer;
    double number;
    bool truth;
    int code;
    query::LiteralValue literal;
    CEEExpression* node;
    query::ArgumentList* arguments;
}

%token NOT 258 OR 259 AND 260 LIKE 261 BETWEEN 262 IN 263 IS 264 NULL 265
%token LPAREN 266 RPAREN 267 COMMA 268 PLUS 269 MINUS 270 STAR 271 SLASH 272
%token EQ 273 NE 274 GT 275 LT 276 GE 277 LE 278
%token <text> IDENT 279 STRING 280
%token <integer> INTEGER 281
%token <truth> TRUE 282 FALSE 283
%token <number> FLOAT 284

%type <node> filter or_expr and_expr not_expr predicate comparison like_test null_test
%type <node> arith additive term factor call
%type <text> field string_lit pattern
%type <code> comp_op
%type <literal> literal
%type <integer> int_lit
%type <number> float_lit
%type <truth> bool_lit
%type <arguments> opt_args args

%start filter

%%

filter: or_expr { $$ = $1; context.setRoot($1, { @1.first_column, @1.last_column }); };

or_expr: and_expr { $$ = $1; }
    | or_expr OR and_expr { $$ = context.binary(EEOr, $1, $3); };

and_expr: not_expr { $$ = $1; }
    | and_expr AND not_expr { $$ = context.binary(EEAnd, $1, $3); };

not_expr: predicate { $$ = $1; }
    | NOT predicate { $$ = context.negation($2); };

predicate: LPAREN filter RPAREN { $$ = $2; }
    | comparison { $$ = $1; }
    | like_test { $$ = $1; }
    | null_test { $$ = $1; };

comparison: arith comp_op arith { $$ = context.binary($2, $1, $3); };

like_test: field LIKE pattern { $$ = context.like($1, $3); };

null_test: field IS NULL { $$ = context.nullTest($1, true); }
    | field IS NOT NULL { $$ = context.nullTest($1, false); };

field: IDENT { $$ = $1; };

comp_op: EQ { $$ = EEEqual; }
    | NE { $$ = EENotEqual; }
    | GT { $$ = EEGreater; }
    | LT { $$ = EELess; }
    | GE { $$ = EEGreaterOrEqual; }
    | LE { $$ = EELessOrEqual; };

arith: additive { $$ = $1; };

additive: term { $$ = $1; }
    | additive PLUS term { $$ = context.binary(EEAdd, $1, $3); }
    | additive MINUS term { $$ = context.binary(EESubtract, $1, $3); };

term: factor { $$ = $1; }
    | term STAR factor { $$ = context.binary(EEMultiply, $1, $3); }
    | term SLASH factor { $$ = context.binary(EEDivide, $1, $3); };

factor: literal { $$ = context.constant($1); }
    | field { $$ = context.variable($1); }
    | LPAREN arith RPAREN { $$ = $2; }
    | call { $$ = $1; };

literal: int_lit { $$ = query::LiteralValue::ofInteger($1); }
    | float_lit { $$ = query::LiteralValue::ofNumber($1); }
    | string_lit { $$ = query::LiteralValue::ofText($1); }
    | bool_lit { $$ = query::LiteralValue::ofTruth($1); };

int_lit: INTEGER { $$ = $1; }
    | PLUS INTEGER { $$ = $2; }
    | MINUS INTEGER { $$ = -$2; };

float_lit: FLOAT { $$ = $1; }
    | PLUS FLOAT { $$ = $2; }
    | MINUS FLOAT { $$ = -$2; };

string_lit: STRING { $$ = $1; };

bool_lit: TRUE { $$ = true; }
    | FALSE { $$ = false; };

call: IDENT LPAREN opt_args RPAREN { $$ = context.call($1, $3); };

opt_args: %empty { $$ = context.emptyList(); }
    | args { $$ = $1; };

args: arith { $$ = context.listOf($1); }
    | args COMMA arith { $$ = context.append($1, $3); };

pattern: string_lit { $$ = $1; };

%%
