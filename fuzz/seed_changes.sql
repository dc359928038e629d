-- Drops, changes and renames of what the script created, in several dialects' forms.
CREATE TABLE customer (id NUMBER(10) NOT NULL, name VARCHAR2(40), CONSTRAINT pk_customer PRIMARY KEY (id));
CREATE TABLE orders (id NUMBER(10) NOT NULL, customer_id NUMBER(10), note VARCHAR2(100) DEFAULT 'none',
  qty NUMBER(5) CONSTRAINT ck_qty CHECK (qty > 0), CONSTRAINT pk_orders PRIMARY KEY (id));
CREATE INDEX ix_orders_note ON orders (note);
ALTER TABLE orders ADD CONSTRAINT fk_orders_customer FOREIGN KEY (customer_id) REFERENCES customer (id);
COMMENT ON COLUMN orders.note IS 'free text';
ALTER TABLE orders MODIFY (note VARCHAR2(200) DEFAULT NULL NULL, qty NUMBER(9));
ALTER TABLE orders ALTER COLUMN qty SET DATA TYPE DECIMAL(12,2) ALTER COLUMN qty DROP NOT NULL;
ALTER TABLE orders ALTER COLUMN note TYPE text, ALTER note SET DEFAULT 'x', DROP COLUMN IF EXISTS gone;
ALTER TABLE orders DROP (note) CASCADE CONSTRAINTS;
ALTER TABLE orders DROP CONSTRAINT fk_orders_customer DROP PRIMARY KEY;
ALTER TABLE customer RENAME COLUMN id TO customer_id;
ALTER TABLE customer RENAME TO client;
ALTER TABLE orders CHANGE COLUMN qty quantity INT NOT NULL;
DROP INDEX ix_orders_note;
DROP INDEX orders.ix_orders_note;
DROP TABLE client CASCADE CONSTRAINTS PURGE;
DROP TABLE IF EXISTS a, b;
DROP PACKAGE BODY pk;
DROP FUNCTION f(INTEGER);
